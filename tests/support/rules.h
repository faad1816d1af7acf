#pragma once

#include <QtCore>

#include <cmath>
#include <set>

/// What is seen, heard and found out at one moment: the texts of controls by their names, the rest by names
/// of its own.
using Facts = QMap<QString, QString>;

/// One thing that a caller does: "click cButt(33): Yes" has a verb, a name, and the answer to the question
/// that comes. "choose cboSec 5" has a value, too.
struct Step
{
    explicit Step(const QString &text)
        : verb(text.section(": ", 0, 0).section(' ', 0, 0))
        , what(text.section(": ", 0, 0).section(' ', 1))
        , name(what.section(' ', 0, 0))
        , value(what.section(' ', 1))
        , array(name.section('(', 0, 0))
        , answer(text.section(": ", 1))
        , index(name.section('(', 1).remove(')').toInt())
    {
    }
    QString verb, what, name, value, array, answer;
    int index;
};

/// The letters of the columns that a pattern takes out of play, and its forms: "X...X ..... ..... .....
/// X...X".
struct Pattern
{
    QString caption, shadow;
    QStringList forms;
};

/// The rules of the game a second time, without a line of the program: what each step leads to.
class Rules
{
public:
    explicit Rules(const QList<Pattern> &patterns)
        : m_patterns(patterns)
    {
    }
    void play(const Step &step)
    {
        static const QString elsewhere = "cOK cListen cSave frmBingo List1 Slider1";
        m_answer = step.answer;
        if (QString("rightclick middleclick slip choose font").contains(step.verb) &&
            !elsewhere.contains(step.array))
            front("frmMain");
        const QHash<QString, std::function<void()>> actions{
            {"click cButt", [&] { number(step.index); }},
            {"click cDemoButt", [&] { selectPattern(step.index); }},
            {"click tDemo", [&] { turn(step.index); }},
            {"click Text1", [&] { focusOn("Text1"); }},
            {"click cRandNum", [&] { draw(); }},
            {"click chkAutoCall", [&] { startCalls(!isOn()); }},
            {"click cPause", [&] { playOrPause(); }},
            {"click cmdClear", [&] { clear(); }},
            {"click cBingo", [&] { pause(), focusOn("Text1"), front("frmBingo"); }},
            {"click chkMakeVoiceCall", [&] { flip(step.name, "Make Voice Calls"), focusOn("Text1"); }},
            {"click frmBingo", [&] { close("frmBingo"); }},
            {"click cOK", [&] { close("frmAbout"); }},
            {"click cListen", [&] { useVoice("cListen"); }},
            {"click cSave", [&] { useVoice("cSave"); }},
            {"choose mnuShaddow", [&] { flip(step.name, "Shaddow Buttons"); }},
            {"choose mnuHelp", [&] { front("frmHelp"); }},
            {"choose mnuAbout", [&] { front("frmAbout"); }},
            {"choose mnuSpeak", [&] { front("frmVoices"); }},
            {"choose cboSec", [&] { setInterval(step.value); }},
            {"choose iFontSize", [&] { setFontSize(step.value); }},
            {"choose List1", [&] { m_chosen = step.value; }},
            {"choose Slider1", [&] { m_rate = ' ' + step.value; }},
            {"font", [&] { now[now["focus"] = "iFontSize"] = step.what, m_isHalfTyped = true; }},
            {"type", [&] { type(step.what); }},
            {"enter", [&] { type(step.what + '\r'); }},
            {"close", [&] { close(step.name); }},
            {"draws", [&] { m_fraction = step.what.toDouble(); }},
            {"key F10", [&] { enterOrLeaveBar(); }},
            {"seconds", [&] { second(); }},
            {"frames", [&] { nextForm(); }},
            {"halfhour", [&] { m_isQuiet = true; }},
            {"service", [&] { serve(step.what); }},
        };
        const bool isRepeated = step.verb == "seconds" || step.verb == "frames";
        for (int times = isRepeated ? step.what.toInt() : 1; times > 0; --times)
            actions.value(step.verb + ' ' + step.array, actions.value(step.verb, [] {}))();
    }

    /// What must be seen now, and what must have been said since the last time.
    Facts facts()
    {
        Facts all = now;
        QStringList last, past, reds, rows;
        for (const int n : m_last)
            last += spoken(n), past += label(n).leftJustified(3);
        for (int n = 1; n <= 75; ++n) {
            reds += m_red.count(n) ? QStringList(spoken(n)) : QStringList();
            all[QString("cButt(%1) in words").arg(n)] =
                spoken(n) + (m_called.count(n) ? ", called" : ", not called");
        }
        for (int id = 1; id <= 21; ++id)
            all[QString("cDemoButt(%1) in words").arg(id)] =
                m_patterns[id - 1].caption + (id == m_pattern ? " pattern, selected" : " pattern");
        for (int i = 1; i <= 25; ++i) {
            all[QString("tDemo(%1) in words").arg(i)] = cell(i);
            const QString row = QString("row %1").arg((i + 4) / 5);
            if (m_lit.count(i) && (rows.isEmpty() || !rows.last().startsWith(row)))
                rows += row;
            if (m_lit.count(i))
                rows.last() += QString(' ') + QString("BINGO")[(i - 1) % 5];
        }
        QStringList windows = m_windows;
        windows.last() += '*'; // the one in front
        windows.sort();
        const bool isCovered = !now["Text1"].isEmpty(); // the middle of cell 10
        all.insert({
            {"lblCallCnt", QString("Balls Called: %1").arg(m_count)},
            {"state in words", (last.mid(0, 1) + QStringList(QString("%1 called").arg(m_count))).join(", ")},
            {"RTB3", m_last.isEmpty() ? "" : label(m_last[0])},
            {"RTB3 in words", listed(last.mid(0, 1))},
            {"RTB4", past.mid(1).join(' ').trimmed()},
            {"RTB4 in words", listed(last.mid(1))},
            {"RTB2 in words", listed(reds)},
            {"red", where([&](int n) { return m_red.count(n); })},
            {"grey", where([&](int n) { return m_called.count(n); })},
            {"black", where([&](int i) { return m_lit.count(i) && !(i == 10 && isCovered); })},
            {"Frame1 in words", "Pattern card, " + (rows.isEmpty() ? "empty" : rows.join(", "))},
            {"Label3 in words", now["cboSec"] + " seconds between automatic draws"},
            {"screen", counts() || !m_isQuiet ? "on" : ""},
            {"windows", windows.join(' ')},
        });
        now["boxes"] = now["said"] = now["spoken"] = "";
        return all;
    }
    QString inFront() const { return m_isInBar ? "bar" : m_windows.last(); }
    /// The numbers of which something is true: "7 33".
    template <class Condition>
    static QString where(Condition holds, int last = 75)
    {
        QStringList texts;
        for (int n = 1; n <= last; ++n)
            texts += holds(n) ? QStringList(QString::number(n)) : QStringList();
        return texts.join(' ');
    }

private:
    static QString label(int n) { return QString("BINGO")[(n - 1) / 15] + QString::number(n); }
    static QString spoken(int n) { return label(n).insert(1, ' '); }
    static QString listed(const QStringList &texts) { return texts.isEmpty() ? "none" : texts.join(", "); }
    QString cell(int i) const
    {
        const QString place = QString("Pattern row %1, column %2, ").arg((i + 4) / 5);
        return place.arg(QString("BINGO")[(i - 1) % 5]) + (m_lit.count(i) ? "lit" : "unlit");
    }
    bool counts() const { return now["countdown"] == "runs"; }
    bool isOn() const { return now["chkAutoCall"] == "on"; }
    void add(const QString &fact, const QString &text)
    {
        now[fact] += (now[fact].isEmpty() ? "" : ". ") + text;
    }
    bool isYes(const QString &question)
    {
        add("boxes", "Clear Board: " + question + ", Are you sure? (Question: Yes, No!)");
        return m_answer == "Yes";
    }
    void useVoice(const QString &button)
    {
        if (m_chosen.isEmpty())
            return add("boxes", "Vellomir: Please select a voice from the list box. (NoIcon: OK!)");
        if (button == "cListen")
            return add("spoken", "Bee 4, Oh 62, Eye 25 " + m_chosen + m_rate);
        m_voice = m_chosen + m_rate;
        close("frmVoices");
    }
    void front(const QString &window) { m_windows.removeAll(window), m_windows += window; }
    void close(const QString &window)
    {
        m_windows.removeAll(window);
        front("frmMain");
        if (window == "frmBingo")
            add("said", "BINGO closed");
        if (window == "frmVoices")
            m_chosen = "", m_rate = " 0";
    }
    void enterOrLeaveBar()
    {
        m_isInBar = !m_isInBar;
        now["focus"].swap(m_before);
        if (!m_isInBar && !m_due.isEmpty())
            focusOn(std::exchange(m_due, QString()));
    }
    void focusOn(const QString &control)
    {
        if (m_isInBar) {
            m_due = control;
            return;
        }
        now["iFontSize"] = std::exchange(m_isHalfTyped, false) ? now["points"] : now["iFontSize"];
        now["focus"] = control;
    }
    void toEntry() { now["Text1"] = "", focusOn("Text1"); }
    void flip(const QString &mark, const QString &caption)
    {
        const bool isOn = now[mark] == "off";
        now[mark] = isOn ? "on" : "off";
        add("said", caption + (isOn ? ", checked" : ", not checked"));
    }

    // ---- Calls
    void number(int n)
    {
        if (!m_called.count(n)) {
            call(n);
        } else if (isYes("Clearing button")) {
            m_called.erase(n);
            m_red = m_called;
            add("said", spoken(n) + " not called");
        }
        now["Text1"] = "";
        focusOn(counts() ? "cPause" : "Text1");
    }
    void call(int n)
    {
        m_called.insert(n);
        m_red = m_called;
        m_last = (QList<int>{n} + m_last).mid(0, 5);
        m_isQuiet = false;
        ++m_count;
        m_phrase = QStringList{"Bee, ", "Eye, ", "En, ", "Gee, ", "Oh, "}[(n - 1) / 15] + QString::number(n);
        now["chkMakeVoiceCall"] == "on" ? say(m_phrase)
                                        : add("said", QString("%1, %2 called").arg(spoken(n)).arg(m_count));
    }
    QList<int> pool() const
    {
        QList<int> left;
        for (int n = 1; n <= 75; ++n)
            left += m_called.count(n) ? QList<int>() : QList<int>{n};
        return left;
    }
    void draw()
    {
        if (!pool().isEmpty())
            return number(pool()[int(m_fraction * double(pool().size()))]);
        add("boxes", "Vellomir: Full Board.... (NoIcon: OK!)");
        if (isOn())
            startCalls(true);
    }
    void clear()
    {
        pause();
        if (isYes("Clearing board")) {
            m_last.clear();
            m_count = 0;
            put(m_pattern);
            drawBoard();
            m_red = m_called;
            add("said", "Board cleared");
        }
        toEntry();
    }

    // ---- What is typed
    void type(const QString &text)
    {
        for (const QChar sign : text) {
            const QString focus = inFront() == "frmMain" ? now["focus"] : "";
            if (focus == "cPause" && (sign == '\r' || sign == ' '))
                playOrPause();
            if (focus == "iFontSize")
                sign == '\r' ? setFontSize(now[focus]) : void(now[focus] += sign);
            if (focus != "Text1")
                continue;
            const QString entry = std::exchange(now["Text1"], QString());
            if (sign == '\r')
                enter(entry);
            else if (sign.toUpper() == 'R')
                draw();
            else if (sign.toUpper() != 'P')
                now["Text1"] = entry + sign;
            else
                playOrPause();
        }
    }
    void enter(QString text)
    {
        for (QChar &sign : text)
            sign = sign.isDigit() ? QChar('0' + sign.digitValue()) : sign;
        const bool hasLetter = !text.isEmpty() && QString("BINGOİı").contains(text[0].toUpper());
        bool isNumber = false;
        const double value = (hasLetter ? text.mid(1, 2) : text).trimmed().toDouble(&isNumber);
        const int n = isNumber && value > 0 && value < 76 ? int(std::nearbyint(value)) : 0;
        n >= 1 && n <= 75 ? number(n) : add("said", "Nothing called");
    }
    void setFontSize(const QString &text)
    {
        m_isHalfTyped = false;
        now["iFontSize"] = text;
        if (drawBoard()) {
            now["iFontSize"] = now["points"].toDouble() == text.toDouble() ? text : now["points"];
            add("said", "Font size " + now["points"]);
        }
        toEntry();
    }
    bool drawBoard()
    {
        bool isNumber = false;
        const double size = now["iFontSize"].trimmed().toDouble(&isNumber);
        isNumber = isNumber && !std::isnan(size);
        now["points"] = isNumber ? QString::number(qBound(5.0, size, 100.0)) : now["points"];
        m_red = isNumber ? m_called : m_red;
        return isNumber;
    }

    // ---- Automatic calls
    void callByItself(bool on, bool counting)
    {
        now["chkAutoCall"] = on ? "on" : "off";
        now["countdown"] = counting ? "runs" : "stands";
        now["cPause"] = counting ? "Pause" : "Play";
        now["lblAutoCall"] = counting ? now["lblAutoCall"] : on ? "Paused" : "";
        add("said", counting ? "Automatic calling, every " + now["cboSec"] + " seconds"
                    : on     ? "Paused"
                             : "Automatic calling off");
    }
    void startCalls(bool on)
    {
        m_left = 2;
        callByItself(on, on);
        focusOn(on ? "cPause" : "Text1");
    }
    void playOrPause() { isOn() ? callByItself(true, !counts()) : void(); }
    void pause() { counts() ? callByItself(true, false) : void(); }
    void setInterval(const QString &seconds)
    {
        now["cboSec"] = seconds;
        focusOn("Text1");
        add("said", seconds + " seconds");
    }
    void second()
    {
        if (m_isInBar && pool().isEmpty())
            return;
        if (counts() && --m_left < 1) {
            m_left = now["cboSec"].toInt();
            draw();
        }
        if (counts())
            now["lblAutoCall"] = QString("Auto Call In : %1").arg(m_left);
    }

    // ---- Patterns
    void selectPattern(int id)
    {
        const bool isSame = m_pattern == id;
        put(isSame ? 0 : id);
        focusOn("Text1");
        const QString columns = m_patterns[id - 1].shadow.split("", Qt::SkipEmptyParts).join(", ");
        add("said",
            m_patterns[id - 1].caption + (isSame             ? " put away"
                                          : m_called.empty() ? ", all columns in play"
                                                             : ", columns " + columns + " out of play"));
    }
    void put(int id)
    {
        const Pattern pattern = id ? m_patterns[id - 1] : Pattern();
        m_pattern = id;
        m_form = 0;
        m_called.clear();
        for (int n = 1; n <= 75; ++n) {
            if (now["mnuShaddow"] == "on" && pattern.shadow.contains(label(n)[0]))
                m_called.insert(n);
        }
        show(pattern.forms.size() == 1 ? pattern.forms[0] : QString());
        now["next form"] = pattern.forms.size() > 1 ? "100" : "";
    }
    void nextForm()
    {
        if (now["next form"].isEmpty())
            return;
        const QStringList &forms = m_patterns[m_pattern - 1].forms;
        show(forms[m_form++ % forms.size()]);
        now["next form"] = "1500";
    }
    void show(QString form)
    {
        m_lit.clear();
        form.remove(' ');
        for (int i = 0; i < form.size(); ++i) {
            if (form[i] == 'X')
                m_lit.insert(i + 1);
        }
    }
    void turn(int i)
    {
        m_lit.erase(i) || m_lit.insert(i).second;
        focusOn("Text1");
        add("said", cell(i));
    }

    // ---- Speech
    void say(const QString &text)
    {
        m_waiting += text;
        if (m_waiting.size() == 1)
            speak();
    }
    void speak()
    {
        add("spoken", m_waiting[0].replace(QRegularExpression(",(?=\\d)"), ", ") + ' ' + m_voice);
        if (m_endsByItself)
            end();
    }
    void end()
    {
        m_waiting.removeFirst();
        if (!m_waiting.isEmpty())
            speak();
        m_isFollowUp = !m_isFollowUp;
        if (!m_isFollowUp)
            return;
        const qsizetype digit = m_phrase.indexOf(' ') + 1;
        if (!m_phrase.startsWith('B') || m_phrase.size() != 6)
            m_phrase = m_phrase.left(digit + 1) + " ," + m_phrase.mid(digit + 1, 1);
        else if (m_phrase.endsWith('4'))
            m_phrase = "And After";
        say(m_phrase);
    }
    void serve(const QString &what)
    {
        m_endsByItself = m_endsByItself && what != "waits";
        if (what == "ends")
            end();
        if (what == "fails")
            m_waiting.clear(), add("boxes", "Run-Time Error: Desc: it went away Err #: -7 (Warning: OK!)");
    }

    Facts now{{"Text1", ""},        {"iFontSize", "33"}, {"points", "33"},        {"cboSec", "10"},
              {"lblAutoCall", ""},  {"cPause", "Pause"}, {"chkAutoCall", "off"},  {"chkMakeVoiceCall", "off"},
              {"mnuShaddow", "on"}, {"focus", "Text1"},  {"countdown", "stands"}, {"next form", ""},
              {"boxes", ""},        {"said", ""},        {"spoken", ""}};
    const QList<Pattern> m_patterns;
    std::set<int> m_called, m_red, m_lit;
    QList<int> m_last;
    QStringList m_windows{"frmMain"}, m_waiting; ///< the one in front last; texts for the voice
    QString m_before, m_due;                     ///< what has the focus when the menu bar is left
    QString m_answer, m_phrase, m_voice = "-1 0", m_chosen, m_rate = " 0";
    int m_count = 0, m_pattern = 0, m_form = 0, m_left = 0;
    double m_fraction = 0.5;
    bool m_isInBar = false, m_endsByItself = true, m_isFollowUp = false, m_isQuiet = true,
         m_isHalfTyped = false;
};
