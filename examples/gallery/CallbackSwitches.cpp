#include "CallbackSwitches.h"

#include <QtCore/QPointer>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QVBoxLayout>

using Quillet::DialogCallback;
using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;

CallbackSwitches::CallbackSwitches(QWidget* parent)
    : QGroupBox(QStringLiteral("Callbacks of exec()"), parent),
      m_preExecVeto(new QCheckBox(QStringLiteral("Pre-exec callback &vetoes"))),
      m_postExecVeto(new QCheckBox(QStringLiteral("Post-exec c&allback vetoes")))
{
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_preExecVeto);
    layout->addWidget(m_postExecVeto);
}

void CallbackSwitches::control(MessageDialogTemplate& t)
{
    t.preExecCallback = controlled(t.preExecCallback, QStringLiteral("pre-exec callback"), m_preExecVeto);
    t.postExecCallback = controlled(t.postExecCallback, QStringLiteral("post-exec callback"), m_postExecVeto);
}

DialogCallback CallbackSwitches::controlled(const DialogCallback& callback,
                                            const QString& callbackName,
                                            const QCheckBox* veto)
{
    return [=, self = QPointer<CallbackSwitches>(this)](MessageDialog& dialog) {
        if (callback && !callback(dialog))
            return false;
        return !self || self->run(callbackName, veto);
    };
}

bool CallbackSwitches::run(const QString& callbackName, const QCheckBox* veto)
{
    const bool vetoes = veto->isChecked();
    Q_EMIT ran(QStringLiteral("%1: %2").arg(callbackName,
                                            vetoes ? QStringLiteral("veto") : QStringLiteral("go on")));
    return !vetoes;
}
