#pragma once

#include <QtCore/QVector>
#include <QtWidgets/QGroupBox>

class QCheckBox;

/// Switches preprocessors of templates on and off; all of them are off again when it is destroyed.
class PreprocessorSwitches : public QGroupBox
{
    Q_OBJECT

public:
    explicit PreprocessorSwitches(QWidget* parent = nullptr);
    ~PreprocessorSwitches() override;

    void switchAll(bool on);

Q_SIGNALS:
    /// What was called, and what it returned.
    void switched(const QString& report);

private:
    QVector<QCheckBox*> m_boxes; // in the order of the preprocessors; what is on is checked
};
