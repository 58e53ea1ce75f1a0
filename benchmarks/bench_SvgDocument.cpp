// What reading whole documents costs beside Qt's XML reader alone, and what drawing and hit-testing shapes
// costs beside the bare calls of Qt.

#include "Rounds.h"
#include "Work.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>
#include <Quillet/SvgNesting.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <memory>

namespace {

using Texts = std::vector<QString>;
using Picture = std::shared_ptr<Quillet::PainterPathContainer>;

bool isAccepted(const QString& text)
{
    Quillet::PainterPathContainer container;
    return Quillet::parseSvg(text, container);
}

/// A document that is rejected is not read to its end, and would be no comparison.
Texts acceptedTexts(const WorkSet& set)
{
    Texts texts;
    for (const WorkFile& file : set.files) {
        if (isAccepted(file.text))
            texts.push_back(file.text);
    }
    benchmark::AddCustomContext("left out as rejected, " + set.name,
                                std::to_string(set.files.size() - texts.size()) + " of "
                                    + std::to_string(set.files.size()));
    return texts;
}

/// Reads into containers that are kept until they are cleared: reading is what is measured, not what becomes
/// of the shapes.
class OurReader
{
public:
    void read(const Texts& texts)
    {
        for (const QString& text : texts) {
            m_pictures.push_back(std::make_unique<Quillet::PainterPathContainer>());
            Quillet::parseSvg(text, *m_pictures.back());
        }
    }

    void clear() { m_pictures.clear(); }

private:
    std::vector<std::unique_ptr<Quillet::PainterPathContainer>> m_pictures;
};

void readXml(const Texts& texts)
{
    for (const QString& text : texts) {
        QDomDocument document;
        document.setContent(text);
        benchmark::DoNotOptimize(document);
    }
}

constexpr int nesting_checks = 10;

Contender ours(const std::string& name, const Texts& texts)
{
    const auto reader = std::make_shared<OurReader>();
    return {name, [=] { reader->read(texts); }, [=] { reader->clear(); }};
}

/// Several times in a row, because a text that has just been decoded is in the caches.
void checkNesting(const Texts& texts)
{
    for (const QString& text : texts) {
        for (int i = 0; i < nesting_checks; ++i)
            benchmark::DoNotOptimize(Quillet::isNestedDeeperThan(2000, text));
    }
}

void compareWithXml(const WorkSet& set)
{
    const Texts texts = acceptedTexts(set);
    compareInRounds(
        set.name,
        {ours("ours", texts), {"xml", [=] { readXml(texts); }}, {"nesting", [=] { checkNesting(texts); }}},
        {{"xml", "ours", "xml"}, {"nesting", "nesting", "xml", "", nesting_checks}},
        11);
}

/// The same amount of text in one piece and in small ones.
void compareSizes()
{
    const QString small = makeDocument(1000000);
    const QString large = makeDocument(50000000);
    compareInRounds("size",
                    {ours("50 MB", {large}), ours("50 x 1 MB", Texts(50, small))},
                    {{"growth", "50 MB", "50 x 1 MB"}},
                    5);
}

// Shapes

constexpr int picture_size = 256;

/// What places a shape of these bounds in the middle of the image.
lumo::AffineTransform<double> placing(const QRectF& bounds)
{
    const double size = std::max({bounds.width(), bounds.height(), 1e-6});
    const double factor = picture_size / size;
    Eigen::Matrix4d matrix = Eigen::Matrix4d::Identity();
    matrix(0, 0) = factor;
    matrix(1, 1) = factor;
    matrix(0, 3) = picture_size / 2.0 - bounds.center().x() * factor;
    matrix(1, 3) = picture_size / 2.0 - bounds.center().y() * factor;
    return lumo::AffineTransform<double>(matrix);
}

/// Every 10th shape of all documents, each placed to fill the image, with the mapped paths computed.
Picture pictureOf(const WorkSet& set)
{
    Quillet::PainterPathContainer all;
    for (const WorkFile& file : set.files)
        Quillet::parseSvg(file.text, all);
    auto picture = std::make_shared<Quillet::PainterPathContainer>();
    for (std::size_t i = 0; i < all.getPaths().size(); i += 10) {
        auto shape = std::make_unique<Quillet::PainterPath>(*all.getPaths()[i]);
        shape->setTransform(placing(shape->getPath().boundingRect()));
        benchmark::DoNotOptimize(shape->getTransformedPath());
        picture->appendPath(std::move(shape));
    }
    return picture;
}

template <typename Draw>
void onImage(Draw draw)
{
    QImage image(picture_size, picture_size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
}

/// What a host without Quillet would keep of a shape.
struct BareShape
{
    QPainterPath path;
    QPen pen;
    QBrush brush;
    bool strokes;
    bool fills;
};

std::vector<BareShape> bareShapesOf(const Picture& picture)
{
    std::vector<BareShape> shapes;
    for (const auto& shape : picture->getPaths()) {
        shapes.push_back({shape->getTransformedPath(),
                          shape->getPen(),
                          shape->getBrush(),
                          shape->getPen().color().isValid(),
                          shape->getBrush().color().isValid()});
    }
    return shapes;
}

void drawBare(const BareShape& shape, QPainter& painter)
{
    if (shape.strokes && shape.fills) {
        painter.setPen(shape.pen);
        painter.setBrush(shape.brush);
        painter.drawPath(shape.path);
    } else if (shape.strokes) {
        painter.strokePath(shape.path, shape.pen);
    } else if (shape.fills) {
        painter.fillPath(shape.path, shape.brush);
    }
}

void compareDrawing(const std::string& name, const Picture& picture, const std::vector<BareShape>& shapes)
{
    const auto ours = [=] { onImage([&](QPainter& painter) { picture->draw(painter); }); };
    const auto bare = [=] {
        onImage([&](QPainter& painter) {
            for (const BareShape& shape : shapes)
                drawBare(shape, painter);
        });
    };
    compareInRounds("draw " + name, {{"ours", ours}, {"bare", bare}}, {{"draw", "ours", "bare"}}, 15);
}

void compareHitTesting(const std::string& name, const Picture& picture, const std::vector<BareShape>& shapes)
{
    const auto ours = [=] {
        for (int i = 0; i < picture_size; i += 8) {
            for (const auto& shape : picture->getPaths())
                benchmark::DoNotOptimize(shape->contains(QPointF(i, i)));
        }
    };
    const auto bare = [=] {
        for (int i = 0; i < picture_size; i += 8) {
            for (const BareShape& shape : shapes)
                benchmark::DoNotOptimize(shape.path.contains(QPointF(i, i)));
        }
    };
    compareInRounds("contains " + name, {{"ours", ours}, {"bare", bare}}, {{"contains", "ours", "bare"}}, 15);
}

void compareMapping(const std::string& name, const Picture& picture)
{
    const auto ours = [=] {
        picture->setTransform(placing(QRectF(0, 0, 64, 64)));
        for (const auto& shape : picture->getPaths())
            benchmark::DoNotOptimize(shape->getTransformedPath());
    };
    const auto bare = [=] {
        const QTransform transform = QTransform::fromScale(4, 4);
        std::vector<QPainterPath> mapped;
        for (const auto& shape : picture->getPaths())
            mapped.push_back(transform.map(shape->getPath()));
        benchmark::DoNotOptimize(mapped);
    };
    compareInRounds("map " + name, {{"ours", ours}, {"bare", bare}}, {{"map", "ours", "bare"}}, 15);
}

void compareShapes(const WorkSet& set)
{
    const Picture picture = pictureOf(set);
    const std::vector<BareShape> shapes = bareShapesOf(picture);
    compareDrawing(set.name, picture, shapes);
    compareHitTesting(set.name, picture, shapes);
    // Of a picture of its own: new mapped paths would take the others' place.
    compareMapping(set.name, pictureOf(set));
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);

    const std::vector<WorkSet> sets = readFileSets();
    for (const WorkSet& set : sets)
        compareWithXml(set);
    compareWithXml(makeTinyPaths());
    compareSizes();
    for (const WorkSet& set : sets) {
        if (set.name == "icons" || set.name == "maps")
            compareShapes(set);
    }
    return runRounds(argc, argv);
}
