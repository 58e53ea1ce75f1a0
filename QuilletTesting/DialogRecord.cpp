#include <QuilletTesting/DialogRecord.h>

#include <QuilletTesting/Labels.h>

namespace Quillet::Testing {

QString DialogRecord::description() const
{
    QStringList lines = {QStringLiteral("identifier: ") + quoted(identifier),
                         QStringLiteral("title: ") + quoted(title),
                         QStringLiteral("text: ") + quoted(text)};
    if (!informativeText.isEmpty())
        lines.append(QStringLiteral("informative text: ") + quoted(informativeText));
    if (!detailedText.isEmpty())
        lines.append(QStringLiteral("detailed text: ") + quoted(detailedText));
    lines.append(QStringLiteral("icon: ") + nameOf(icon));
    if (!checkBox.isNull())
        lines.append(QStringLiteral("check box: ") + quoted(checkBox));
    lines.append(QStringLiteral("buttons: ") + quoted(buttons));
    if (!defaultButton.isNull())
        lines.append(QStringLiteral("default button: ") + quoted(defaultButton));
    if (!primaryButton.isNull())
        lines.append(QStringLiteral("primary button: ") + quoted(primaryButton));
    if (!screenshot.isEmpty())
        lines.append(QStringLiteral("screenshot: ") + screenshot);
    return lines.join(QLatin1Char('\n'));
}

QDebug operator<<(QDebug debug, const DialogRecord& record)
{
    const QDebugStateSaver saver(debug);
    debug.noquote() << indented(record.description());
    return debug;
}

} // namespace Quillet::Testing
