#pragma once

#include <QApplication>

namespace app {

/// An application that goes on when a handler fails: an exception that leaves any handler is shown in the
/// "Run-Time Error" box.
class Application : public QApplication
{
    Q_OBJECT

public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;
};

} // namespace app
