#pragma once

#include <QtWidgets/QWidget>

class QPlainTextEdit;
class QTextBlock;

/// The log of a page: its own lines, and the diagnostic lines of the library.
class LogView : public QWidget
{
    Q_OBJECT

public:
    /// \param placeholder what an empty log says.
    explicit LogView(const QString& placeholder, QWidget* parent = nullptr);

    /// Adds a line of the page's own.
    void add(const QString& line);

    /// Adds a diagnostic line with its level. It stands back behind the page's lines, or stands out from
    /// level 3 on.
    void addDiagnostic(int level, const QString& line);

protected:
    void changeEvent(QEvent* event) override;

private:
    void append(const QString& line, int level);
    void paint(const QTextBlock& block);

    QPlainTextEdit* m_lines; // a block's user state is the level of its line
};
