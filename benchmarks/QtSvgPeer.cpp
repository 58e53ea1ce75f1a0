#include "QtSvgPeer.h"

#include "Work.h"

#include <Quillet/SvgPathParser.h>

#ifdef QUILLET_HAVE_QT_SVG

#    include <QtSvg/QSvgRenderer>

#    include <algorithm>

namespace {

bool hasWarned = false;

void noteWarning(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*text*/)
{
    hasWarned = true;
}

bool isAbout(const QRectF& one, const QRectF& other)
{
    const double tolerance = 1e-3 * std::max({1.0, one.width(), one.height()});
    const auto differ = [=](double a, double b) { return !(qAbs(a - b) <= tolerance); };
    return !differ(one.left(), other.left()) && !differ(one.top(), other.top())
           && !differ(one.right(), other.right()) && !differ(one.bottom(), other.bottom());
}

} // namespace

namespace QtSvgPeer {

bool isAvailable()
{
    return true;
}

void load(const QByteArray& document)
{
    QSvgRenderer renderer;
    renderer.load(document);
}

std::shared_ptr<void> read(const QByteArray& document)
{
    return std::make_shared<QSvgRenderer>(document);
}

bool readsAlike(const QStringList& data)
{
    hasWarned = false; // as it does of data that it does not read to the end
    const QtMessageHandler handler = qInstallMessageHandler(noteWarning);
    QSvgRenderer renderer;
    const bool isLoaded = renderer.load(documentOf(data).toUtf8());
    qInstallMessageHandler(handler);
    if (!isLoaded || hasWarned)
        return false;
    for (int i = 0; i < data.size(); ++i) {
        QPainterPath path;
        if (!Quillet::parseSvgPathData(data.at(i), path))
            return false;
        const QRectF bounds = renderer.boundsOnElement(QStringLiteral("p%1").arg(i));
        if (!isAbout(path.boundingRect(), bounds))
            return false;
    }
    return true;
}

} // namespace QtSvgPeer

#else

namespace QtSvgPeer {

bool isAvailable()
{
    return false;
}

void load(const QByteArray& /*document*/) {}

std::shared_ptr<void> read(const QByteArray& /*document*/)
{
    return nullptr;
}

bool readsAlike(const QStringList& /*data*/)
{
    return false;
}

} // namespace QtSvgPeer

#endif
