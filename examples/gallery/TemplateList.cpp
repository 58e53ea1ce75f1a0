#include "TemplateList.h"

#include <Quillet/MessageDialogTemplate.h>

#include <QtCore/QSignalBlocker>

using Quillet::MessageDialogTemplate;

void TemplateList::renew(const QString& id)
{
    const QSignalBlocker block(this);
    clear();
    for (const auto& entry : MessageDialogTemplate::getRegisteredTemplates()) {
        addItem(entry.first);
        if (entry.first == id)
            setCurrentRow(count() - 1);
    }
}

QString TemplateList::chosenId() const
{
    const QListWidgetItem* const item = currentItem();
    return item ? item->text() : QString();
}

const MessageDialogTemplate* TemplateList::chosen() const
{
    const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
    const auto found = templates.find(chosenId());
    return found == templates.end() ? nullptr : &found->second;
}
