// Path data, read by the library and by the literal reader: the results must be the same to the last bit.

#include "LiteralPathReader.h"
#include "PathComparison.h"

#include <Quillet/SvgPathParser.h>

#include <cstdint>
#include <cstdlib>

namespace {

// UTF-8 for the most part. Behind a first byte of 0xff the bytes are code units, so that any can be had.
QString textOf(const char* data, int size)
{
    if (size == 0 || static_cast<unsigned char>(data[0]) != 0xff)
        return QString::fromUtf8(data, size);
    QString text;
    for (int i = 1; i + 1 < size; i += 2)
        text.append(QChar(uchar(data[i]), uchar(data[i + 1])));
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = textOf(reinterpret_cast<const char*>(data), int(size));
    QPainterPath actual;
    QPainterPath expected;
    const bool actualResult = Quillet::parseSvgPathData(text, actual);
    const bool expectedResult = readPathDataLiterally(text, expected);
    const QString difference = firstDifference(actual, expected);
    if (actualResult != expectedResult || !difference.isEmpty()) {
        qCritical("%s", qPrintable(difference));
        std::abort();
    }
    return 0;
}
