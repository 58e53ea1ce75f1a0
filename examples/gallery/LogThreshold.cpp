#include "LogThreshold.h"

#include <quorvel/Logger.h>

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSpinBox>

LogThreshold::LogThreshold(QWidget* parent) : QWidget(parent)
{
    auto* threshold = new QSpinBox;
    threshold->setRange(0, 4);
    threshold->setToolTip(QStringLiteral("2: what the library does. 3: calls that it refuses."));
    connect(threshold, QOverload<int>::of(&QSpinBox::valueChanged), this, [](int level) {
        quorvel::SetLoggerLevel(level);
    });
    threshold->setValue(2);

    auto* label = new QLabel(QStringLiteral("Lo&g lines from level"));
    label->setBuddy(threshold);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(threshold);
    layout->addStretch();
}
