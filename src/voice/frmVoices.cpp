#include "frmVoices.h"

#include "delayed_input.h"
#include "design_table.h"
#include "message_box.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>

#include <algorithm>

using controls::control;
using controls::DesignRow;
using controls::Kind;
using speech::SpVoice;

// clang-format off
constexpr DesignRow design[] = {
    // kind             name       caption         left   top  width height  tab
    {Kind::ListBox,     "List1",   "",              210,  420,  5790,  2400,   0},
    {Kind::Slider,      "Slider1", "",              210, 3150,  3375,   225,   1},
    {Kind::Label,       "Label1",  "Select Voice",  210,  210,   900,   195,   2},
    {Kind::Label,       "Label2",  "Select Speed",  210, 2940,   960,   195,   3},
    {Kind::PushButton,  "cListen", "Listen",        315, 3570,  3165,   540,   4},
    {Kind::PushButton,  "cSave",   "cSave",        3990, 3570,  2010,   540,   5},
};
// clang-format on

constexpr int clientWidth = 6210;
constexpr int clientHeight = 4545;

frmVoices::frmVoices(voice::VoiceChoice &choice, QWidget *owner)
    : QWidget(owner, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                         Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint)
    , m_choice(choice)
{
    setObjectName(QStringLiteral("frmVoices"));
    setWindowTitle(QStringLiteral("Form1"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(controls::pixels(clientWidth), controls::pixels(clientHeight));
    controls::buildDesign(design, this);

    List1 = control<QListWidget>(this, "List1");
    List1->setAccessibleName(QStringLiteral("Select Voice"));
    List1->installEventFilter(this);
    Slider1 = control<QSlider>(this, "Slider1");
    Slider1->setAccessibleName(QStringLiteral("Select Speed"));
    Slider1->setRange(-10, 10);
    Slider1->setPageStep(5);
    connect(control<QPushButton>(this, "cListen"), &QPushButton::clicked, this, &frmVoices::cListen_Click);
    connect(control<QPushButton>(this, "cSave"), &QPushButton::clicked, this, &frmVoices::cSave_Click);
}

void frmVoices::Form_Load()
{
    try {
        oVoice = std::make_unique<SpVoice>();
    } catch (const base::Error &error) {
        controls::reportError(isVisible() ? this : parentWidget(), error);
        return;
    }
    connect(oVoice.get(), &SpVoice::VoicesKnown, this, &frmVoices::listVoices);
    connect(oVoice.get(), &SpVoice::Failed, this,
            [this](const base::Error &error) { controls::reportError(this, error); });
}

/// Qt makes a row the current one when the list gets the focus, and an arrow would leave it unselected.
bool frmVoices::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !List1->selectedItems().isEmpty() || List1->count() == 0)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool isArrow = key >= Qt::Key_Left && key <= Qt::Key_Down;
    const bool isJump =
        key == Qt::Key_Home || key == Qt::Key_End || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
    if (isArrow || isJump)
        List1->setCurrentRow(std::max(List1->currentRow(), 0), QItemSelectionModel::Select);
    return isArrow;
}

/// Entry i of the list is voice i. A service that was started anew may have other voices.
void frmVoices::listVoices()
{
    if (m_listed == oVoice->GetVoices())
        return;
    m_listed = oVoice->GetVoices();
    List1->clear();
    List1->addItems(m_listed);
}

void frmVoices::cListen_Click()
{
    if (!voiceSelected())
        return;
    oVoice->setVoice(List1->currentRow());
    oVoice->setRate(Slider1->value());
    const auto delayed = controls::delayInput();
    oVoice->Speak(QStringLiteral("Bee 4, Oh 62, Eye 25"), SpVoice::SVSFDefault);
}

void frmVoices::cSave_Click()
{
    if (!voiceSelected())
        return;
    m_choice.VoiceIndex = List1->currentRow();
    m_choice.VoiceRate = Slider1->value();
    close();
}

/// True when a voice is selected in the list; else says that one is wanted. Where there was none to select,
/// the service is asked again: it may have been installed or started meanwhile.
bool frmVoices::voiceSelected()
{
    if (!List1->selectedItems().isEmpty())
        return true;
    if (m_listed.isEmpty()) // they come while the notice is open
        QMetaObject::invokeMethod(this, &frmVoices::Form_Load, Qt::QueuedConnection);
    controls::notice(this, QStringLiteral("Please select a voice from the list box."));
    return false;
}
