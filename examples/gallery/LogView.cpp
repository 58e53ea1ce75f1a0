#include "LogView.h"

#include <QtCore/QEvent>
#include <QtGui/QTextBlock>
#include <QtGui/QTextCursor>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int no_level = -1; // of the page's own lines
constexpr int warning_level = 3;

QColor mixed(const QColor& one, const QColor& other)
{
    return QColor::fromRgbF(0.7 * one.redF() + 0.3 * other.redF(),
                            0.7 * one.greenF() + 0.3 * other.greenF(),
                            0.7 * one.blueF() + 0.3 * other.blueF());
}

QTextCharFormat formatOf(int level, const QPalette& palette)
{
    const QColor& text = palette.color(QPalette::Text);
    const QColor& base = palette.color(QPalette::Base);
    const bool dark = base.lightness() < 128;

    QTextCharFormat format;
    if (level >= warning_level) {
        format.setForeground(QColor(dark ? QStringLiteral("#ff8a80") : QStringLiteral("#b00020")));
        format.setFontWeight(QFont::Bold);
    } else {
        format.setForeground(level == no_level ? text : mixed(text, base));
    }
    return format;
}

} // namespace

LogView::LogView(const QString& placeholder, QWidget* parent) : QWidget(parent), m_lines(new QPlainTextEdit)
{
    m_lines->setObjectName(QStringLiteral("log"));
    m_lines->setReadOnly(true);
    m_lines->setUndoRedoEnabled(false);
    m_lines->setPlaceholderText(placeholder);
    auto* clear = new QPushButton(QStringLiteral("Clear"));
    connect(clear, &QPushButton::clicked, m_lines, &QPlainTextEdit::clear);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_lines);
    layout->addWidget(clear, 0, Qt::AlignRight);
}

void LogView::add(const QString& line)
{
    append(line, no_level);
}

void LogView::addDiagnostic(int level, const QString& line)
{
    append(QStringLiteral("[%1] %2").arg(QString::number(level), line), level);
}

void LogView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    for (QTextBlock block = m_lines->document()->begin(); block.isValid(); block = block.next())
        paint(block);
}

void LogView::append(const QString& line, int level)
{
    m_lines->appendPlainText(line);
    QTextBlock block = m_lines->document()->lastBlock();
    block.setUserState(level);
    paint(block);
}

void LogView::paint(const QTextBlock& block)
{
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.setCharFormat(formatOf(block.userState(), palette()));
}
