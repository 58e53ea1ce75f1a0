// Runs a fuzz target over the files of a directory, without the fuzzing engine.

#include <QtCore/QDir>
#include <QtCore/QTextStream>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv)
{
    QTextStream err(stderr);
    const QDir corpus(QString::fromLocal8Bit(argc == 2 ? argv[1] : ""));
    const QStringList names = corpus.entryList(QDir::Files, QDir::Name);
    if (argc != 2 || names.isEmpty()) {
        err << "usage: " << argv[0] << " DIRECTORY_WITH_INPUTS\n";
        return 2;
    }

    for (const QString& name : names) {
        err << name << Qt::endl; // before it is run, so that it is known what failed
        QFile file(corpus.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            err << "cannot be read\n";
            return 1;
        }
        const QByteArray bytes = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                               std::size_t(bytes.size()));
    }
    return 0;
}
