#include "PreprocessorSwitches.h"

#include "SampleTemplates.h"

#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>

#include <QtGui/QTextDocument>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QVBoxLayout>

using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;

namespace {

void translate(MessageDialogTemplate& t)
{
    t.title = inGerman(t.title);
    t.text = inGerman(t.text);
    for (auto& button : t.buttons)
        button.text = inGerman(button.text);
}

void prefixTitle(MessageDialogTemplate& t)
{
    t.title.prepend(QStringLiteral("Gallery: "));
}

void escapeText(MessageDialogTemplate& t)
{
    if (Qt::mightBeRichText(t.text))
        t.text = Qt::convertFromPlainText(t.text, Qt::WhiteSpaceNormal);
}

struct Preprocessor
{
    QString name;
    QString label;
    void (*function)(MessageDialogTemplate&);
};

// The names put them in order: a text that is escaped already would have no translation.
const QVector<Preprocessor>& preprocessors()
{
    static const QVector<Preprocessor> all = {
        {QStringLiteral("1-translate"), QStringLiteral("1-trans&late: texts in German"), translate},
        {QStringLiteral("2-prefix"), QStringLiteral("2-&prefix: title with \"Gallery: \""), prefixTitle},
        {QStringLiteral("3-escape"), QStringLiteral("3-e&scape: text as it stands"), escapeText},
    };
    return all;
}

QString switchPreprocessor(const Preprocessor& preprocessor, bool on)
{
    const bool done = on ? MessageDialogTemplatePreprocessors::add(preprocessor.name, preprocessor.function)
                         : MessageDialogTemplatePreprocessors::remove(preprocessor.name);
    return QStringLiteral("%1(\"%2\") returned %3")
        .arg(on ? QStringLiteral("add") : QStringLiteral("remove"),
             preprocessor.name,
             done ? QStringLiteral("true") : QStringLiteral("false"));
}

} // namespace

PreprocessorSwitches::PreprocessorSwitches(QWidget* parent)
    : QGroupBox(QStringLiteral("Preprocessors, by name"), parent)
{
    auto* layout = new QVBoxLayout(this);
    for (const Preprocessor& preprocessor : preprocessors()) {
        auto* box = new QCheckBox(preprocessor.label);
        box->setObjectName(preprocessor.name);
        connect(box, &QCheckBox::toggled, this, [this, preprocessor](bool on) {
            Q_EMIT switched(switchPreprocessor(preprocessor, on));
        });
        layout->addWidget(box);
        m_boxes.append(box);
    }
}

PreprocessorSwitches::~PreprocessorSwitches()
{
    // Not by the check boxes: nobody may hear of it any more.
    for (int i = 0; i < m_boxes.size(); ++i) {
        if (m_boxes[i]->isChecked())
            MessageDialogTemplatePreprocessors::remove(preprocessors()[i].name);
    }
}

void PreprocessorSwitches::switchAll(bool on)
{
    for (QCheckBox* box : qAsConst(m_boxes))
        box->setChecked(on);
}
