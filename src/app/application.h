#pragma once

#include "double_click_filter.h"
#include "held_keys.h"

#include <QApplication>

namespace app {

/// An application that goes on when a handler fails: an exception that leaves any handler is shown in the
/// "Run-Time Error" box. Held keys and double clicks do no harm in any of its windows.
class Application : public QApplication
{
    Q_OBJECT

public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;

private:
    HeldKeys m_heldKeys;
    DoubleClickFilter m_doubleClickFilter;
};

} // namespace app
