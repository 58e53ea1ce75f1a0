// How much memory a document takes while it is read and what is read from it keeps, beside Qt's tree of the
// document and Qt's SVG renderer. Counts what the whole process gets from malloc(), which glibc allows.

#include "QtSvgPeer.h"
#include "Work.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QCoreApplication>
#include <QtXml/QDomDocument>

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <memory>

namespace {

std::atomic<std::size_t> bytes_in_use = 0;
std::atomic<std::size_t> most_bytes_in_use = 0;

void* noteTaken(void* memory)
{
    const std::size_t now = bytes_in_use += malloc_usable_size(memory);
    if (now > most_bytes_in_use)
        most_bytes_in_use = now;
    return memory;
}

void noteGivenBack(void* memory)
{
    bytes_in_use -= malloc_usable_size(memory);
}

} // namespace

// glibc declares these with reserved names for the parameters, and calls its own by reserved names.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name, bugprone-reserved-identifier)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t align, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) noexcept
{
    return noteTaken(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept
{
    return noteTaken(__libc_calloc(count, size));
}

void* realloc(void* memory, std::size_t size) noexcept
{
    noteGivenBack(memory);
    return noteTaken(__libc_realloc(memory, size));
}

void* memalign(std::size_t align, std::size_t size) noexcept
{
    return noteTaken(__libc_memalign(align, size));
}

void* aligned_alloc(std::size_t align, std::size_t size) noexcept
{
    return memalign(align, size);
}

int posix_memalign(void** memory, std::size_t align, std::size_t size) noexcept
{
    *memory = memalign(align, size);
    return *memory ? 0 : ENOMEM;
}

void free(void* memory) noexcept
{
    noteGivenBack(memory);
    __libc_free(memory);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name, bugprone-reserved-identifier)

namespace {

struct Use
{
    std::size_t kept; ///< by what \a read has returned
    std::size_t most; ///< while it ran
};

/// \a read returns what is to be kept, so that it is still there when the memory is counted.
Use useOf(const std::function<std::shared_ptr<void>()>& read)
{
    const std::size_t before = bytes_in_use;
    most_bytes_in_use = before;
    const std::shared_ptr<void> kept = read();
    return {bytes_in_use - before, most_bytes_in_use - before};
}

std::shared_ptr<Quillet::PainterPathContainer> readOurs(const QString& text)
{
    auto picture = std::make_shared<Quillet::PainterPathContainer>();
    if (!Quillet::parseSvg(text, *picture))
        std::fputs("A document was rejected.\n", stderr);
    return picture;
}

std::shared_ptr<Quillet::PainterPathContainer> readAndMap(const QString& text)
{
    auto picture = readOurs(text);
    Eigen::Matrix4d moved = Eigen::Matrix4d::Identity();
    moved(0, 3) = 1;
    picture->setTransform(lumo::AffineTransform<double>(moved));
    for (const auto& shape : picture->getPaths())
        shape->getTransformedPath();
    return picture;
}

std::shared_ptr<QDomDocument> readTree(const QString& text)
{
    auto document = std::make_shared<QDomDocument>();
    document->setContent(text);
    return document;
}

/// Of a second run: what is made only once is there then.
Use usedBy(const std::function<std::shared_ptr<void>()>& read)
{
    read();
    return useOf(read);
}

/// A document's size, and the memory of the peer that all are compared with.
struct Measure
{
    double paths;
    double characters;
    Use peer;
};

/// Prints a row of the table.
void report(const char* name, const Use& use, const Measure& by)
{
    std::printf("| %s | %.0f | %.2f | %.1f | %.2f |\n",
                name,
                double(use.kept) / by.paths,
                double(use.kept) / double(by.peer.kept),
                double(use.most) / by.characters,
                double(use.most) / double(by.peer.most));
}

void compare(const char* name, const QString& text)
{
    double paths = 0;
    double elements = 0;
    const auto picture = readOurs(text);
    for (const auto& shape : picture->getPaths()) {
        ++paths;
        elements += shape->getPath().elementCount();
    }
    std::printf("\n%s: %.1f million characters, %.0f paths of %.0f elements\n\n",
                name,
                text.size() / 1e6,
                paths,
                elements / paths);
    std::puts(
        "| Kept | For a path, in bytes | Ratio | At most while reading, in bytes for a character | Ratio |");
    std::puts("|---|---|---|---|---|");
    const Measure measure{paths, double(text.size()), usedBy([&] { return readTree(text); })};
    report("the shapes", usedBy([&] { return readOurs(text); }), measure);
    report("the shapes, drawn once", usedBy([&] { return readAndMap(text); }), measure);
    report("`QDomDocument`", measure.peer, measure);
    const QByteArray bytes = text.toUtf8();
    if (QtSvgPeer::isAvailable())
        report("`QSvgRenderer`", usedBy([&] { return QtSvgPeer::read(bytes); }), measure);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    compare("Small shapes", makeTinyPaths().files.front().text);
    compare("Curves", makeDocument(4000000));
    return 0;
}
