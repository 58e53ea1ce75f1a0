#include <QuilletTesting/Labels.h>

#include <QtCore/QMetaEnum>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QPushButton>

namespace Quillet::Testing {

QString withoutMnemonic(const QString& text)
{
    QString label = QLatin1String(""); // not null: that is for no button
    for (int i = 0; i < text.size(); ++i) {
        // A '&' marks the character after it; that may be a '&' itself, which is then shown.
        if (text.at(i) == QLatin1Char('&') && ++i == text.size())
            break;
        label.append(text.at(i));
    }
    return label;
}

QString labelOf(const QAbstractButton* button)
{
    return button ? withoutMnemonic(button->text()) : QString();
}

QString nameOf(const QWidget& widget)
{
    if (qobject_cast<const QPushButton*>(&widget))
        return QStringLiteral("button ") + quoted(labelOf(qobject_cast<const QAbstractButton*>(&widget)));
    if (qobject_cast<const QCheckBox*>(&widget))
        return QStringLiteral("check box ") + quoted(labelOf(qobject_cast<const QAbstractButton*>(&widget)));
    const QString className = QString::fromLatin1(widget.metaObject()->className());
    return widget.objectName().isEmpty() ? className
                                         : className + QLatin1Char(' ') + quoted(widget.objectName());
}

QString indented(const QString& lines)
{
    return QStringLiteral("\n  ") + QString(lines).replace(QLatin1Char('\n'), QStringLiteral("\n  "));
}

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString quoted(const QStringList& texts)
{
    QStringList result;
    for (const QString& text : texts)
        result.append(quoted(text));
    return result.isEmpty() ? QStringLiteral("none") : result.join(QStringLiteral(", "));
}

QString nameOf(QMessageBox::Icon icon)
{
    return QString::fromLatin1(QMetaEnum::fromType<QMessageBox::Icon>().valueToKey(icon));
}

QString namesOf(QMessageBox::StandardButtons buttons)
{
    // One by one: of all names of a value, such as Ok and FirstButton, the first is the one that people use.
    const auto names = QMetaEnum::fromType<QMessageBox::StandardButtons>();
    QStringList result;
    for (int button = QMessageBox::FirstButton; button <= QMessageBox::LastButton; button *= 2) {
        if (buttons & button)
            result.append(QString::fromLatin1(names.valueToKey(button)));
    }
    return result.isEmpty() ? QStringLiteral("none") : result.join(QLatin1Char('|'));
}

QString nameOf(QMessageBox::ButtonRole role)
{
    // QMessageBox does not make the names of its roles known to the meta-object system.
    static const char* const names[] = {"AcceptRole",
                                        "RejectRole",
                                        "DestructiveRole",
                                        "ActionRole",
                                        "HelpRole",
                                        "YesRole",
                                        "NoRole",
                                        "ResetRole",
                                        "ApplyRole"};
    if (role < 0 || role >= QMessageBox::NRoles)
        return QStringLiteral("role %1").arg(int(role));
    return QString::fromLatin1(names[role]);
}

} // namespace Quillet::Testing
