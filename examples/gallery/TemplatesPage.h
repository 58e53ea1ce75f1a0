#pragma once

#include "GalleryPage.h"
#include "LoggerTap.h"

#include <Quillet/MessageDialog.h>

#include <QtCore/QSet>

class LogView;
class PreprocessorSwitches;
class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class TemplateEditor;

namespace Quillet {
struct MessageDialogTemplate;
}

/// Registers, edits and runs dialog templates, and shows what the library and they have to say. Registry,
/// preprocessors and logger are again as they were once the page is destroyed.
class TemplatesPage : public GalleryPage
{
    Q_OBJECT

public:
    explicit TemplatesPage(QWidget* parent = nullptr);
    ~TemplatesPage() override;

    QString name() const override;
    QString title() const override;

    /// Loads the most typical sample, after one call that the library refuses.
    void prepareForPicture() override;

    /// The dialogs of all samples, on one sheet, and what all preprocessors make of some.
    QVector<Picture> pictures() override;

private:
    QWidget* createList();
    QWidget* createEditor();
    QWidget* createSwitches();
    QWidget* createCallbackSwitches();
    QWidget* createThreshold();
    void registerSamples();

    /// The registered template that is chosen in the list; null where there is none.
    const Quillet::MessageDialogTemplate* chosenTemplate() const;
    void loadChosenTemplate();
    void registerEditedTemplate();
    void unregisterEditedTemplate();
    void execChosenTemplate();
    void openChosenTemplate();

    /// Lists what is registered and chooses \a id.
    void listTemplates(const QString& id);
    void showState();

    void registerWithActions(Quillet::MessageDialogTemplate t);
    Quillet::DialogCallback
    reporting(const Quillet::DialogCallback& callback, const QString& callbackName, const QCheckBox* veto);

    LogView* m_log;
    LoggerTap m_tap;
    QListWidget* m_list;
    QPushButton* m_exec;
    QPushButton* m_open;
    TemplateEditor* m_editor;
    QPushButton* m_register;
    QLabel* m_state;
    PreprocessorSwitches* m_preprocessors;
    QCheckBox* m_preExecVeto;
    QCheckBox* m_postExecVeto;
    QSet<QString> m_registered; // by this page
    bool m_edited = false;      // since it was loaded or registered
};
