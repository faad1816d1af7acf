#include "frmBingo.h"

#include "appearance.h"
#include "design_table.h"
#include "rich_text_box.h"
#include "text_box.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QTimer>
#include <QWindow>

#include <algorithm>

using controls::DesignRow;
using controls::Kind;

// clang-format off
constexpr DesignRow design[] = {
    // kind          name     caption  left   top  width height  tab
    {Kind::TextBox,  "Text1", "Text1",    0, 1785,  1170,   180,   1},
    {Kind::Display,  "RTB1",  "",         0,    0,  2325,  1590,   0},
};

/// What the word looks like when it is not white; at step 0 it still is.
constexpr struct { double points; Qt::GlobalColor color; } steps[] = {
    {250.0, Qt::white},
    {300.0, Qt::blue},
    {150.0, Qt::red},
    {300.0, Qt::black},
    {150.0, Qt::green},
    {300.0, Qt::yellow},
    {150.0, Qt::magenta},
};
// clang-format on

constexpr int lastStep = 6;
constexpr controls::RichTextBox::Range word{1, 5};

frmBingo::frmBingo(QWidget *owner)
    : QWidget(owner, QGuiApplication::platformName().startsWith(QLatin1String("wayland"))
                         ? Qt::Widget
                         : Qt::Tool | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmBingo"));
    setWindowTitle(QStringLiteral("Form1"));
    setAttribute(Qt::WA_DeleteOnClose);
    controls::buildDesign(design, this);
    RTB1 = controls::control<controls::RichTextBox>(this, "RTB1");
    Text1 = controls::control<controls::TextBox>(this, "Text1");
    setAccessibleName(QStringLiteral("BINGO opened")); // said when the window comes to the front
    RTB1->setAccessibleName(QStringLiteral("BINGO"));
    Text1->setAccessibleName(QStringLiteral("A click or Alt+F4 closes it"));
    RTB1->viewport()->installEventFilter(this); // a click: RTB1_Click
    RTB1->setFrameShape(QFrame::NoFrame);
    RTB1->setFont(controls::displayFont(99.75));

    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    connect(Timer1, &QTimer::timeout, this, &frmBingo::Timer1_Timer);
}

void frmBingo::Form_Load()
{
    Timer1->start(500);
}

void frmBingo::cover()
{
    setGeometry(isWindow() ? parentWidget()->windowHandle()->frameGeometry() : parentWidget()->rect());
}

void frmBingo::fill()
{
    RTB1->setText(QStringLiteral("\nBINGO"), Qt::cyan, Qt::AlignHCenter);
    setWord(250.0);
    RTB1->showStart();
}

/// Gives the word its size and keeps it on one line of the window.
void frmBingo::setWord(double points)
{
    m_points = points;
    RTB1->setFontSize(word, points);
    const QFontMetricsF letters(controls::displayFont(points), RTB1);
    RTB1->setOutline(word,
                     {Qt::black, 0.02 * letters.capHeight(), Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin});
    const double width = letters.horizontalAdvance(QStringLiteral("BINGO"));
    RTB1->setLetterWidth(word, std::clamp(static_cast<int>(100 * RTB1->width() / width), 1, 100));
}

void frmBingo::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Form_Resize();
}

void frmBingo::Form_Resize()
{
    RTB1->resize(size());
    setWord(m_points);
}

void frmBingo::Timer1_Timer()
{
    Timer1->setInterval(250);
    RTB1->setFont(controls::displayFont(100.0)); // of the blank line above
    bFlash = !bFlash;
    if (bFlash) {
        RTB1->setColor(word, Qt::white);
    } else {
        setWord(steps[iFlashStep].points);
        RTB1->setColor(word, steps[iFlashStep].color);
        iFlashStep = iFlashStep % lastStep + 1;
    }
    Text1->setFocus();
}

bool frmBingo::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonRelease)
        RTB1_Click();
    return QWidget::eventFilter(watched, event);
}
