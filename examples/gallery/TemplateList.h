#pragma once

#include <QtWidgets/QListWidget>

namespace Quillet {
struct MessageDialogTemplate;
}

/// Lists the registered templates by their identifiers.
class TemplateList : public QListWidget
{
    Q_OBJECT

public:
    using QListWidget::QListWidget;

    /// Lists what is registered now and chooses \a id, or nothing where that is not registered. Emits no
    /// signal.
    void renew(const QString& id);

    /// The identifier that is chosen; empty where none is.
    QString chosenId() const;

    /// The registered template that is chosen; null where none is.
    const Quillet::MessageDialogTemplate* chosen() const;
};
