#pragma once

#include <QObject>

#include <functional>
#include <vector>

namespace controls {

/// While one exists the cursor is a wait cursor, and what the user types and clicks is held back. The windows
/// get it when the object is destroyed. Meanwhile windows can be closed and message boxes answered.
/// (QEventLoop::ExcludeUserInputEvents would keep the closing of a window, too.)
class DelayedInput : public QObject
{
    Q_OBJECT

public:
    DelayedInput();
    ~DelayedInput() override;

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    std::vector<std::function<void()>> m_deliveries; ///< each sends one event that was kept
};

} // namespace controls
