#pragma once

#include <Quillet/MessageDialogTemplate.h>

#include <QtWidgets/QGroupBox>

class QCheckBox;

/// Reports when callbacks of templates run, and lets them veto.
class CallbackSwitches : public QGroupBox
{
    Q_OBJECT

public:
    explicit CallbackSwitches(QWidget* parent = nullptr);

    /// Puts both callbacks of \a t under the switches; those that it has run first. The callbacks may outlive
    /// the switches.
    void control(Quillet::MessageDialogTemplate& t);

Q_SIGNALS:
    /// Which callback ran, and how it ended.
    void ran(const QString& report);

private:
    Quillet::DialogCallback
    controlled(const Quillet::DialogCallback& callback, const QString& callbackName, const QCheckBox* veto);
    bool run(const QString& callbackName, const QCheckBox* veto);

    QCheckBox* m_preExecVeto;
    QCheckBox* m_postExecVeto;
};
