// Documents: read, then drawn and hit under extreme transforms. Nothing may crash, a refused nesting must be
// one that Qt's reader would really reach, and what was read must be drawable.

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>
#include <Quillet/SvgNesting.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtXml/QDomDocument>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>

using Quillet::PainterPathContainer;
using Transform = lumo::AffineTransform<double>;

namespace {

// What is drawn is bounded, so that a run does not stay in Qt's rasteriser.
constexpr int most_elements_to_draw = 200;

int depthBelow(const QDomNode& node)
{
    int deepest = 0;
    for (QDomElement child = node.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        deepest = qMax(deepest, 1 + depthBelow(child));
    return deepest;
}

void check(bool holds, const char* what)
{
    if (holds)
        return;
    qCritical("%s", what);
    std::abort();
}

void checkNesting(const QString& text)
{
    if (Quillet::isNestedDeeperThan(500, text))
        return;
    QDomDocument document;
    const bool wellFormed = document.setContent(text);
    const int depth = depthBelow(document);
    check(depth <= 500, "a deep document was judged shallow");
    check(depth == 0 || Quillet::isNestedDeeperThan(depth - 1, text), "a document is deeper than was judged");
    // Content models count as well, and are no part of the document that was read.
    const bool onlyElements = !text.contains(QLatin1String("<!ELEMENT"));
    check(!wellFormed || !onlyElements || !Quillet::isNestedDeeperThan(depth, text),
          "a shallow document was judged deep");
}

Transform scaling(double x, double y)
{
    Eigen::Matrix<double, 4, 4> matrix = Eigen::Matrix<double, 4, 4>::Identity();
    matrix(0, 0) = x;
    matrix(1, 1) = y;
    matrix(0, 1) = y;
    return Transform(matrix);
}

int elementCount(const PainterPathContainer& container)
{
    int count = 0;
    for (const auto& shape : container.getPaths())
        count += shape->getPath().elementCount();
    return count;
}

void drawAndHit(PainterPathContainer& container)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
    for (const Transform& transform : {Transform(),
                                       scaling(0.5, 0.25),
                                       scaling(0, 0),
                                       scaling(1e-300, -1),
                                       scaling(1e300, 1e300),
                                       scaling(infinity, 1),
                                       scaling(1, not_a_number)}) {
        container.setTransform(transform);
        for (const double at : {0.0, 3.5, -1e300, infinity, not_a_number})
            container.contains(QPointF(at, 1));

        QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        container.draw(painter);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Qt says a lot about colours and widths that are none.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });

    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    checkNesting(text);
    PainterPathContainer container;
    Quillet::parseSvg(text, container);
    if (elementCount(container) <= most_elements_to_draw)
        drawAndHit(container);
    return 0;
}
