#include "SampleTemplates.h"

#include <QtCore/QHash>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;

namespace {

MessageDialogTemplate saveChanges()
{
    MessageDialogTemplate t;
    t.id = QStringLiteral("save-changes");
    t.icon = QMessageBox::Question;
    t.title = QStringLiteral("Unsaved changes");
    t.text = QStringLiteral("Save the changes to Harbour.svg?");
    t.buttons[0] = {QStringLiteral("&Save"), QMessageBox::AcceptRole, true, false, {}};
    t.buttons[1] = {QStringLiteral("&Discard"), QMessageBox::DestructiveRole, false, false, {}};
    t.buttons[2] = {QStringLiteral("Cancel"), QMessageBox::RejectRole, false, true, {}};
    return t;
}

MessageDialogTemplate deleteFile()
{
    MessageDialogTemplate t;
    t.id = QStringLiteral("delete-file");
    t.icon = QMessageBox::Warning;
    t.title = QStringLiteral("Delete a file");
    // A file name that passes for a tag unless it is escaped.
    t.text = QStringLiteral("Delete Sketch <b>.svg? It cannot be brought back.");
    t.buttons[0] = {QStringLiteral("&Delete"), QMessageBox::DestructiveRole, false, false, {}};
    t.buttons[1] = {QStringLiteral("&Keep"), QMessageBox::RejectRole, true, true, {}};
    return t;
}

MessageDialogTemplate about()
{
    MessageDialogTemplate t;
    t.id = QStringLiteral("about");
    t.icon = QMessageBox::Information;
    t.title = QStringLiteral("About Harbour");
    t.text = QStringLiteral("<b>Harbour 2.4</b><br>Draws ships, and where they come home to.");
    t.buttons[0] = {QStringLiteral("&Close"), QMessageBox::AcceptRole, true, true, {}};
    return t;
}

MessageDialogTemplate exportFailed()
{
    MessageDialogTemplate t;
    t.id = QStringLiteral("export-failed");
    t.icon = QMessageBox::Critical;
    t.title = QStringLiteral("Export failed");
    t.text = QStringLiteral("2 of 128 pictures could not be exported.");
    t.buttons[0] = {QStringLiteral("&Try again"), QMessageBox::AcceptRole, true, false, {}};
    t.buttons[1] = {QStringLiteral("S&kip them"), QMessageBox::ActionRole, false, false, {}};
    t.buttons[2] = {QStringLiteral("Cancel"), QMessageBox::RejectRole, false, true, {}};
    // Details are no part of a template, but whatever a dialog can do can be done before it runs.
    t.preExecCallback = [](MessageDialog& dialog) {
        dialog.setDetailedText(
            QStringLiteral("quay.png: the disk is full\nlighthouse.png: the disk is full"));
        return true;
    };
    return t;
}

} // namespace

QVector<MessageDialogTemplate> sampleTemplates()
{
    return {about(), deleteFile(), exportFailed(), saveChanges()};
}

QString inGerman(const QString& text)
{
    static const QHash<QString, QString> texts = {
        {QStringLiteral("Unsaved changes"), QStringLiteral("Ungesicherte Änderungen")},
        {QStringLiteral("Save the changes to Harbour.svg?"),
         QStringLiteral("Die Änderungen an Harbour.svg sichern?")},
        {QStringLiteral("&Save"), QStringLiteral("&Sichern")},
        {QStringLiteral("&Discard"), QStringLiteral("&Verwerfen")},
        {QStringLiteral("Cancel"), QStringLiteral("Abbrechen")},
        {QStringLiteral("Delete a file"), QStringLiteral("Eine Datei löschen")},
        {QStringLiteral("Delete Sketch <b>.svg? It cannot be brought back."),
         QStringLiteral("Sketch <b>.svg löschen? Das ist endgültig.")},
        {QStringLiteral("&Delete"), QStringLiteral("&Löschen")},
        {QStringLiteral("&Keep"), QStringLiteral("&Behalten")},
        {QStringLiteral("About Harbour"), QStringLiteral("Über Harbour")},
        {QStringLiteral("<b>Harbour 2.4</b><br>Draws ships, and where they come home to."),
         QStringLiteral("<b>Harbour 2.4</b><br>Zeichnet Schiffe und ihren Hafen.")},
        {QStringLiteral("&Close"), QStringLiteral("&Schließen")},
        {QStringLiteral("Export failed"), QStringLiteral("Export fehlgeschlagen")},
        {QStringLiteral("2 of 128 pictures could not be exported."),
         QStringLiteral("2 von 128 Bildern konnten nicht exportiert werden.")},
        {QStringLiteral("&Try again"), QStringLiteral("&Noch einmal")},
        {QStringLiteral("S&kip them"), QStringLiteral("Über&springen")},
    };
    return texts.value(text, text);
}
