#pragma once

#include <QtCore/QStringList>

#include <memory>

class QByteArray;

/// Qt's SVG renderer, where it is installed, seen from outside only.
namespace QtSvgPeer {

bool isAvailable();

/// Reads the document, draws nothing.
void load(const QByteArray& document);

/// Reads the document and hands over what keeps it; null where Qt SVG is not installed.
std::shared_ptr<void> read(const QByteArray& document);

/// Whether Qt gets the same outlines out of the path data as Quillet does, as far as their bounds show. It
/// does not where arc flags are written together and where one of the two rejects something.
bool readsAlike(const QStringList& data);

} // namespace QtSvgPeer
