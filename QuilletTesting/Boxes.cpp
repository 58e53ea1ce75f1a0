#include <QuilletTesting/Boxes.h>

#include <QuilletTesting/Labels.h>

#include <Quillet/MessageDialog.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QKeyEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QPushButton>

#include <algorithm>

namespace Quillet::Testing {

namespace {

QString identifierOf(const QMessageBox& box)
{
    const auto* const dialog = qobject_cast<const MessageDialog*>(&box);
    const QString id = dialog ? dialog->getId() : QString();
    return id.isEmpty() ? box.objectName() : id;
}

QMessageBox::Icon iconOf(const QMessageBox& box)
{
    // QMessageBox forgets the icon of a box that gets a picture, as a MessageDialog does on its first show.
    const QPixmap picture = box.iconPixmap();
    if (box.icon() != QMessageBox::NoIcon || picture.isNull() || !qobject_cast<const MessageDialog*>(&box))
        return box.icon();
    for (const auto icon :
         {QMessageBox::Information, QMessageBox::Warning, QMessageBox::Critical, QMessageBox::Question}) {
        MessageDialog other({}, {}, icon);
        other.updateStyle();
        if (other.iconPixmap().toImage() == picture.toImage())
            return icon;
    }
    return QMessageBox::NoIcon;
}

// The window at the head of all that have been opened from one another.
const QWidget* mainWindowOf(const QWidget& window)
{
    const QWidget* head = &window;
    while (head->parentWidget())
        head = head->parentWidget();
    return head;
}

} // namespace

void describe(const QMessageBox& box, DialogRecord& record)
{
    record.identifier = identifierOf(box);
    record.icon = iconOf(box);
    record.title = box.windowTitle();
    record.text = box.text();
    record.informativeText = box.informativeText();
    record.detailedText = box.detailedText();
    record.checkBox = labelOf(box.checkBox());
    record.buttons.clear();
    const QList<QAbstractButton*> buttons = box.buttons();
    for (const QAbstractButton* button : buttons)
        record.buttons.append(labelOf(button));
    record.defaultButton = labelOf(box.defaultButton());
    const auto* const dialog = qobject_cast<const MessageDialog*>(&box);
    record.primaryButton = labelOf(dialog ? dialog->getPrimaryButton() : nullptr);
}

QString obstacleOf(const QMessageBox& box)
{
    if (!box.windowHandle()->isExposed())
        return QStringLiteral(", its window not exposed");
    // A window manager takes its time to give a window the size that it has asked for when its first show has
    // given it its look. Under a fractional scale factor that size is rounded.
    const QSize size = box.size() + QSize(1, 1);
    return size == size.expandedTo(box.minimumSize())
               ? QString()
               : QStringLiteral(", its window smaller than its contents");
}

QString blockerOf(const QDialog& dialog)
{
    const auto isBlocker = [&](const QWidget* other) {
        return other && other != &dialog && other->isVisible()
               && (other->windowModality() == Qt::ApplicationModal
                   || (other->windowModality() == Qt::WindowModal
                       && mainWindowOf(*other) == mainWindowOf(dialog)));
    };
    const QWidget* blocker = QApplication::activeModalWidget();
    if (!isBlocker(blocker)) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto found = std::find_if(windows.begin(), windows.end(), isBlocker);
        if (found == windows.end())
            return QStringLiteral(", blocked by another window");
        blocker = *found;
    }
    return QStringLiteral(", blocked by a %1 titled %2")
        .arg(QString::fromLatin1(blocker->metaObject()->className()), quoted(blocker->windowTitle()));
}

const QWidget* popupOver(const QMessageBox& box)
{
    const QWidget* const popup = QApplication::activePopupWidget();
    const QWidget* owner = popup;
    while (owner && owner != &box)
        owner = owner->parentWidget();
    return owner ? nullptr : popup;
}

void closePopups()
{
    const QWidget* last = nullptr;
    QWidget* popup = QApplication::activePopupWidget();
    while (popup && popup != last) {
        last = popup;
        popup->close();
        popup = QApplication::activePopupWidget();
    }
}

void dismiss(const QPointer<QDialog>& dialog)
{
    const auto isOpen = [&] { return dialog && dialog->isVisible(); };
    if (isOpen()) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(dialog, &escape);
    }
    if (isOpen())
        dialog->close();
    if (isOpen())
        dialog->done(QDialog::Rejected);
    if (isOpen())
        dialog->QDialog::setVisible(false); // whatever the dialog itself makes of it
}

QString saveScreenshot(QWidget& widget, const QString& directory, const QString& name)
{
    if (directory.isEmpty())
        return {};
    QString base = name;
    for (QChar& each : base) {
        if (!each.isLetterOrNumber() && each != QLatin1Char('-'))
            each = QLatin1Char('_');
    }
    base.truncate(80); // what file systems can bear
    QDir().mkpath(directory);
    QString file;
    int number = 0;
    do {
        file = QStringLiteral("%1/%2-%3.png").arg(directory, base, QString::number(++number));
    } while (QFile::exists(file));
    if (widget.grab().save(file))
        return file;
    qWarning("The screenshot %s cannot be written.", qUtf8Printable(file));
    return {};
}

} // namespace Quillet::Testing
