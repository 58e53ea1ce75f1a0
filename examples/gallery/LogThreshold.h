#pragma once

#include <QtWidgets/QWidget>

/// Sets the threshold of the process's logger; lets through all that the library writes at first.
class LogThreshold : public QWidget
{
    Q_OBJECT

public:
    explicit LogThreshold(QWidget* parent = nullptr);
};
