#pragma once

#include "GalleryPage.h"
#include "LoggerTap.h"

#include <QtCore/QSet>

class CallbackSwitches;
class LogView;
class PreprocessorSwitches;
class QLabel;
class QPushButton;
class TemplateEditor;
class TemplateList;

namespace Quillet {
struct MessageDialogTemplate;
}

/// Registers, edits and runs dialog templates, and shows what the library and they have to say. With the page
/// goes what it put into the process: templates, preprocessors, the log sink and the threshold.
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
    void registerSamples();
    void registerWithActions(Quillet::MessageDialogTemplate t);

    void loadChosenTemplate();
    void registerEditedTemplate();
    void unregisterEditedTemplate();
    void execChosenTemplate();
    void openChosenTemplate();
    void showState();

    LogView* m_log;
    LoggerTap m_tap;
    TemplateList* m_list;
    QPushButton* m_exec;
    QPushButton* m_open;
    TemplateEditor* m_editor;
    QPushButton* m_register;
    QLabel* m_state;
    PreprocessorSwitches* m_preprocessors;
    CallbackSwitches* m_callbacks;
    QSet<QString> m_registered; // by this page
    bool m_edited = false;      // since it was loaded or registered
};
