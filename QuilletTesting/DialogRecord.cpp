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
    lines.append(QStringLiteral("icon: ") + nameOf(icon));
    lines.append(QStringLiteral("buttons: ") + quoted(buttons));
    if (!defaultButton.isNull())
        lines.append(QStringLiteral("default button: ") + quoted(defaultButton));
    if (!primaryButton.isNull())
        lines.append(QStringLiteral("primary button: ") + quoted(primaryButton));
    if (!screenshot.isEmpty())
        lines.append(QStringLiteral("screenshot: ") + screenshot);
    return lines.join(QLatin1Char('\n'));
}

} // namespace Quillet::Testing
