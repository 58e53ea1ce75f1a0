#include "TestCase.h"

#include <Quillet/MessageDialog.h>
#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtGui/QTextDocument>
#include <QtWidgets/QLabel>

namespace {

//! [untrusted-file]
bool readUntrusted(const QString& fileName, Quillet::PainterPathContainer& picture)
{
    constexpr qint64 most = 4000000;
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return false; // a pipe or a device might never end
    const QByteArray bytes = file.read(most + 1);
    if (bytes.size() > most || bytes.contains("<!ENTITY"))
        return false;
    return Quillet::parseSvg(QString::fromUtf8(bytes), picture);
}
//! [untrusted-file]

QSize sizeOf(const QMessageBox& box, const char* label)
{
    return box.findChild<QLabel*>(QLatin1String(label))->sizeHint();
}

const char* const text_label = "qt_msgbox_label";
const char* const informative_label = "qt_msgbox_informativelabel";

} // namespace

class TestSecuritySnippets : public TestCase
{
    Q_OBJECT

    QTemporaryDir m_directory;
    QString m_image = m_directory.filePath(QStringLiteral("secret.png"));
    QString m_tag = QStringLiteral("<img src=\"%1\">").arg(m_image);

    QString write(const QByteArray& content)
    {
        QFile file(m_directory.filePath(QStringLiteral("picture.svg")));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("picture.svg cannot be written");
        return file.fileName();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QImage image(300, 200, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(m_image));
    }

    void filesThatMayGrowAreRefused_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("accepted");
        const QByteArray document = "<svg><path d='M0 0L1 1'/></svg>";
        QTest::newRow("an ordinary file") << document << true;
        QTest::newRow("a document type without entities") << "<!DOCTYPE svg>" + document << true;
        QTest::newRow("an entity") << "<!DOCTYPE svg [<!ENTITY a '<g/>'>]>" + document << false;
        QTest::newRow("the most") << document + QByteArray(4000000 - document.size(), ' ') << true;
        QTest::newRow("too much") << document + QByteArray(4000001 - document.size(), ' ') << false;
    }

    void filesThatMayGrowAreRefused()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, accepted);
        Quillet::PainterPathContainer picture;
        QCOMPARE(readUntrusted(write(content), picture), accepted);
        QCOMPARE(picture.getPaths().size(), std::size_t(accepted ? 1 : 0));
    }

    void whatIsNoFileIsRefused()
    {
        Quillet::PainterPathContainer picture;
        QVERIFY(!readUntrusted(m_directory.path(), picture));
        QVERIFY(!readUntrusted(QStringLiteral("/dev/zero"), picture));
    }

    // What the guide says of entities: a document of n characters may make more than n shapes.
    void anEntityIsReadWhereverItIsNamed()
    {
        const QString text =
            QStringLiteral("<!DOCTYPE svg [<!ENTITY a '%1'>]><svg>%2</svg>")
                .arg(QStringLiteral("<path/>").repeated(100), QStringLiteral("&a;").repeated(200));
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(text, picture));
        QCOMPARE(picture.getPaths().size(), std::size_t(100 * 200));
    }

    // What the guide says of rich text.

    void aTagInTheTextLoadsAFile()
    {
        Quillet::MessageDialog dialog(m_tag, QMessageBox::Warning);
        QVERIFY(sizeOf(dialog, text_label).height() >= 200);
    }

    void linksInTheTextAreOpened()
    {
        const Quillet::MessageDialog dialog(m_tag, QMessageBox::Warning);
        QVERIFY(dialog.findChild<QLabel*>(QLatin1String(text_label))->openExternalLinks());
    }

    void plainTextDoesNotReachTheInformativeText()
    {
        Quillet::MessageDialog dialog;
        dialog.setTextFormat(Qt::PlainText);
        dialog.setText(m_tag);
        dialog.setInformativeText(m_tag);
        QVERIFY(sizeOf(dialog, text_label).height() < 200);
        QVERIFY(sizeOf(dialog, informative_label).height() >= 200);
    }

    void escapingAloneLeavesReferencesToBeSeen()
    {
        QVERIFY(!Qt::mightBeRichText(QStringLiteral("Tom & Jerry").toHtmlEscaped()));
        QVERIFY(Qt::mightBeRichText(Qt::convertFromPlainText(QStringLiteral("Tom & Jerry"))));
    }

    void convertedTextsLoadNothing()
    {
        const QString message = m_tag;
        const QString details = m_tag;
        //! [plain]
        Quillet::MessageDialog dialog(Qt::convertFromPlainText(message, Qt::WhiteSpaceNormal),
                                      QMessageBox::Warning);
        dialog.setInformativeText(Qt::convertFromPlainText(details, Qt::WhiteSpaceNormal));
        //! [plain]
        QVERIFY(sizeOf(dialog, text_label).height() < 200);
        QVERIFY(sizeOf(dialog, informative_label).height() < 200);
        QVERIFY(Qt::mightBeRichText(dialog.text()));
    }
};

QUILLET_TEST_MAIN(TestSecuritySnippets)
#include "tst_SecuritySnippets.moc"
