// What the shows of a MessageDialog cost beside those of a QMessageBox that is given the same two style
// sheets and the same picture by hand; what building a dialog from a template costs beside code that builds
// it; and what finding a template costs beside the bare tables of the standard library and of Qt.

#include "Rounds.h"

#include <Quillet/MessageDialogTemplate.h>

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <random>

namespace {

using Box = std::shared_ptr<QMessageBox>;

const QString text = QStringLiteral("Save the changes to Harbour.svg?");
constexpr QMessageBox::StandardButtons buttons =
    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel;

QString content(const char* resource)
{
    QFile file(QString::fromLatin1(resource));
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

void styleByHand(QMessageBox& box)
{
    box.setStyleSheet(content(":/QSS/MessageBox.qss"));
    box.button(QMessageBox::Save)->setStyleSheet(content(":/QSS/PrimaryButton.qss"));
    box.setIconPixmap(QPixmap(QStringLiteral(":/Icons/Question.svg")));
}

void show(QMessageBox& box)
{
    box.show();
    QCoreApplication::processEvents();
}

void hide(QMessageBox& box)
{
    box.hide();
    QCoreApplication::processEvents();
}

Box makeOurs()
{
    const auto box = std::make_shared<Quillet::MessageDialog>(text, QMessageBox::Question);
    box->setStandardButtons(buttons);
    return box;
}

Box makePlain()
{
    return std::make_shared<QMessageBox>(QMessageBox::Question, QStringLiteral("Question"), text, buttons);
}

/// As an application would that wants its boxes to look like this.
Box makeStyled()
{
    Box box = makePlain();
    styleByHand(*box);
    return box;
}

/// As late as a MessageDialog has to, which leaves it to its callers to give it sheets of their own first.
void showThenStyle(QMessageBox& box)
{
    box.show();
    styleByHand(box);
    QCoreApplication::processEvents();
}

/// The show of a new box, from its construction to its picture. Its end is not measured.
Contender firstShow(const std::string& name,
                    const std::function<Box()>& make,
                    const std::function<void(QMessageBox&)>& show)
{
    const auto shown = std::make_shared<Box>();
    return {name,
            [=] {
                *shown = make();
                show(**shown);
            },
            [=] {
                hide(**shown);
                shown->reset();
            }};
}

/// The show of a box that was shown before.
Contender
laterShow(const std::string& name, const Box& box, const std::function<void(QMessageBox&)>& prepare = nullptr)
{
    show(*box);
    hide(*box);
    return {name,
            [=] {
                if (prepare)
                    prepare(*box);
                show(*box);
            },
            [=] { hide(*box); }};
}

/// Two at a time: what is this short feels the caches that another kind of work leaves behind.
void compareShows(const std::string& name, const Contender& ours, const Contender& peer, int turns)
{
    compareInRounds(name, {ours, peer}, {{peer.name, ours.name, peer.name}}, 51, turns);
}

void compareFirstShows()
{
    const Contender ours = firstShow("ours", makeOurs, show);
    compareShows("first show, styled after", ours, firstShow("styled after", makePlain, showThenStyle), 10);
    compareShows("first show, styled before", ours, firstShow("styled before", makeStyled, show), 10);
}

void compareLaterShows()
{
    const Contender ours = laterShow("ours", makeOurs());
    compareShows("later show, styled once", ours, laterShow("styled once", makeStyled()), 40);
    compareShows("later show, styled anew", ours, laterShow("styled anew", makeStyled(), styleByHand), 40);
}

// Templates

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;

bool allow(MessageDialog& /*dialog*/)
{
    return true;
}

MessageDialogTemplate makeTemplate(const QString& id)
{
    MessageDialogTemplate t;
    t.id = id;
    t.icon = QMessageBox::Question;
    t.title = QStringLiteral("Harbour");
    t.text = text;
    t.buttons[0].text = QStringLiteral("Save");
    t.buttons[0].isDefault = true;
    t.buttons[1].text = QStringLiteral("Discard");
    t.buttons[1].role = QMessageBox::DestructiveRole;
    t.buttons[2].text = QStringLiteral("Cancel");
    t.buttons[2].role = QMessageBox::RejectRole;
    t.buttons[2].isEscape = true;
    t.preExecCallback = allow;
    t.postExecCallback = allow;
    return t;
}

Box buildFromTemplate(const MessageDialogTemplate& t)
{
    return Box(t.createDialog());
}

Box buildByHand()
{
    auto* const dialog = new MessageDialog(QStringLiteral("Harbour"), text, QMessageBox::Question);
    Box owner(dialog);
    dialog->setId(QStringLiteral("save-changes"));
    dialog->setCallbacks(allow, allow);
    dialog->setDefaultButton(dialog->addButton(QStringLiteral("Save"), QMessageBox::AcceptRole));
    dialog->addButton(QStringLiteral("Discard"), QMessageBox::DestructiveRole);
    dialog->setEscapeButton(dialog->addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole));
    return owner;
}

/// The end of the dialog is not measured.
Contender build(const std::string& name, const std::function<Box()>& make)
{
    const auto built = std::make_shared<Box>();
    return {name, [=] { *built = make(); }, [=] { built->reset(); }};
}

void compareBuilding()
{
    const MessageDialogTemplate t = makeTemplate(QStringLiteral("save-changes"));
    compareInRounds("build",
                    {build("ours", [=] { return buildFromTemplate(t); }), build("by hand", buildByHand)},
                    {{"by hand", "ours", "by hand"}},
                    51,
                    40);
}

// Registry

constexpr int registered_templates = 100;
constexpr int searches = 1000; // for each identifier

QString identifier(int i)
{
    return QStringLiteral("dialog-%1").arg(i, 3, 10, QLatin1Char('0'));
}

/// All identifiers, in no order but the same in every run. None shares its characters with a key.
QStringList shuffledIdentifiers()
{
    QStringList ids;
    for (int i = 0; i < registered_templates; ++i)
        ids.append(identifier(i));
    std::shuffle(ids.begin(), ids.end(), std::mt19937());
    return ids;
}

/// \a table is asked for anew each time, as a host asks for the registry.
template <typename GetTable>
Contender search(const std::string& name, const QStringList& ids, GetTable table)
{
    return {name, [=] {
                for (int i = 0; i < searches; ++i) {
                    for (const QString& id : ids)
                        benchmark::DoNotOptimize(table().find(id));
                }
            }};
}

void compareSearching()
{
    const auto map = std::make_shared<std::map<QString, MessageDialogTemplate>>();
    const auto hash = std::make_shared<QHash<QString, MessageDialogTemplate>>();
    for (int i = 0; i < registered_templates; ++i) {
        MessageDialogTemplate::registerTemplate(makeTemplate(identifier(i)));
        map->emplace(identifier(i), makeTemplate(identifier(i)));
        hash->insert(identifier(i), makeTemplate(identifier(i)));
    }
    const QStringList ids = shuffledIdentifiers();
    compareInRounds("find",
                    {search("ours", ids, MessageDialogTemplate::getRegisteredTemplates),
                     search(
                         "map", ids, [=]() -> const auto& { return *map; }),
                     search(
                         "hash", ids, [=]() -> const auto& { return *hash; })},
                    {{"map", "ours", "map"}, {"hash", "ours", "hash"}},
                    51);
}

QImage pictureOf(const Box& box)
{
    show(*box);
    return box->grab().toImage();
}

bool lookAlike(const Box& a, const Box& b)
{
    return pictureOf(a) == pictureOf(b);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    // The platform warns on each show about what it cannot do.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

    const MessageDialogTemplate t = makeTemplate(QStringLiteral("save-changes"));
    if (!lookAlike(makeOurs(), makeStyled()) || !lookAlike(buildFromTemplate(t), buildByHand())) {
        std::fputs("The boxes do not look alike.\n", stderr);
        return 1;
    }
    compareFirstShows();
    compareLaterShows();
    compareBuilding();
    compareSearching();
    return runRounds(argc, argv);
}
