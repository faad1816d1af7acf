#pragma once

#include <QtCore>

#include <cmath>
#include <set>

/// What is seen, heard and found out at one moment: the texts of controls by their names, the rest by names
/// of its own.
using Facts = QMap<QString, QString>;

/// The rules of the game a second time, without a line of the program: what each step leads to.
class Rules
{
public:
    /// Reads the patterns from a file: "4 Stamp; N; XX... XX... ..... ..... ..... / ...".
    explicit Rules(const QString &path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no patterns");
        for (const QString &line : QString(file.readAll()).split('\n', Qt::SkipEmptyParts))
            m_patterns += line.section(' ', 1).split("; ");
    }
    /// Takes a step of a script: "click cButt(33)", "choose cboSec 5".
    void play(const QString &step)
    {
        const QString verb = step.section(' ', 0, 0), what = step.section(' ', 1);
        const QString name = what.section(' ', 0, 0), value = what.section(' ', 1);
        const QString array = name.section('(', 0, 0);
        const int index = name.section('(', 1).remove(')').toInt();
        const QHash<QString, std::function<void()>> actions{
            {"click cButt", [&] { number(index); }},
            {"click cDemoButt", [&] { selectPattern(index); }},
            {"click tDemo", [&] { turn(index); }},
            {"click cRandNum", [&] { draw(); }},
            {"click chkAutoCall", [&] { startCalls(!isOn("chkAutoCall")); }},
            {"click cPause", [&] { playOrPause(); }},
            {"click cmdClear", [&] { clear(); }},
            {"click cBingo", [&] { pause(), focusOn("Text1"), front("frmBingo"); }},
            {"click chkMakeVoiceCall", [&] { flip(name, "Make Voice Calls"), focusOn("Text1"); }},
            {"click frmBingo", [&] { close(name), add("said", "BINGO closed"); }},
            {"click cOK", [&] { close("frmAbout"); }},
            {"choose mnuShaddow", [&] { flip(name, "Shaddow Buttons"); }},
            {"choose mnuHelp", [&] { front("frmHelp"); }},
            {"choose mnuAbout", [&] { front("frmAbout"); }},
            {"choose mnuSpeak", [&] { front("frmVoices"); }},
            {"choose cboSec", [&] { setInterval(value); }},
            {"choose iFontSize", [&] { setFontSize(value); }},
            {"size", [&] { setFontSize(what); }},
            {"type", [&] { type(what); }},
            {"enter", [&] { type(what + '\r'); }},
            {"close", [&] { close(name); }},
            {"answers", [&] { m_answer = what; }},
            {"draws", [&] { m_fraction = what.toDouble(); }},
            {"seconds", [&] { second(); }},
            {"frames", [&] { nextForm(); }},
        };
        if (QString("click slip choose size").contains(verb) && name != "frmBingo" && name != "cOK")
            front("frmMain");
        for (int times = verb == "seconds" || verb == "frames" ? what.toInt() : 1; times > 0; --times)
            actions.value(verb + ' ' + array, actions.value(verb, [] {}))();
    }

    /// What must be seen now, and what must have been said since the last time.
    Facts facts()
    {
        Facts all = now;
        QStringList last, past, reds, rows;
        for (const int n : m_last)
            last += spoken(n), past += label(n);
        for (const int n : m_red)
            reds += spoken(n);
        for (int n = 1; n <= 75; ++n)
            all[QString("cButt(%1) in words").arg(n)] =
                spoken(n) + (m_called.count(n) ? ", called #a0a0a0" : ", not called #f0f0f0");
        for (int id = 1; id <= 21; ++id)
            all[QString("cDemoButt(%1) in words").arg(id)] =
                m_patterns[id][0] + (id == m_pattern ? " pattern, selected" : " pattern");
        for (int row = 1, i = 0; row <= 5; ++row) {
            QString lit;
            for (const QChar letter : QString("BINGO")) {
                lit += isLit(++i) ? QString(' ') + letter : "";
                all[QString("tDemo(%1) in words").arg(i)] = cell(i) + (isLit(i) ? " #000000" : " #ffffff");
            }
            rows += lit.isEmpty() ? QStringList() : QStringList(QString("row %1").arg(row) + lit);
        }
        all.insert({
            {"lblCallCnt", QString("Balls Called: %1").arg(m_count)},
            {"state in words", (last.mid(0, 1) + QStringList(QString("%1 called").arg(m_count))).join(", ")},
            {"RTB3", past.value(0)},
            {"RTB3 in words", listed(last.mid(0, 1))},
            {"RTB4", past.mid(1).join(' ')},
            {"RTB4 in words", listed(last.mid(1))},
            {"RTB2 in words", listed(reds)},
            {"red", listed(reds)},
            {"Frame1 in words", "Pattern card, " + (rows.isEmpty() ? "empty" : rows.join(", "))},
            {"Label3 in words", now["cboSec"] + " seconds between automatic draws"},
        });
        now["boxes"] = now["said"] = now["spoken"] = "";
        return all;
    }
    QString inFront() const { return now["front"]; }

private:
    static QString label(int n) { return QString("BINGO")[(n - 1) / 15] + QString::number(n); }
    static QString spoken(int n) { return label(n).insert(1, ' '); }
    static QString listed(const QStringList &texts) { return texts.isEmpty() ? "none" : texts.join(", "); }
    bool isLit(int i) const { return m_card[i - 1] == 'X'; }
    QString cell(int i) const
    {
        const QString place = QString("Pattern row %1, column %2, ").arg((i + 4) / 5);
        return place.arg(QString("BINGO")[(i - 1) % 5]) + (isLit(i) ? "lit" : "unlit");
    }
    bool isOn(const QString &mark) const { return now[mark] == "on"; }
    bool counts() const { return isOn("countdown"); }
    void add(const QString &fact, const QString &text)
    {
        now[fact] += (now[fact].isEmpty() ? "" : ". ") + text;
    }
    bool isYes(const QString &question)
    {
        add("boxes", "Clear Board: " + question + ", Are you sure?");
        return m_answer == "Y";
    }
    void front(const QString &window) { now[window] = "open", now["front"] = window; }
    void close(const QString &window)
    {
        now[window] = "";
        front("frmMain");
    }
    void focusOn(const QString &control) { now["focus"] = control; }
    void toEntry() { now["Text1"] = "", focusOn("Text1"); }
    void flip(const QString &mark, const QString &caption)
    {
        now[mark] = isOn(mark) ? "off" : "on";
        add("said", caption + (isOn(mark) ? ", checked" : ", not checked"));
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
        ++m_count;
        if (!isOn("chkMakeVoiceCall"))
            return add("said", QString("%1, %2 called").arg(spoken(n)).arg(m_count));
        const QString name = QStringList{"Bee, ", "Eye, ", "En, ", "Gee, ", "Oh, "}[(n - 1) / 15];
        add("spoken", name + QString::number(n) + " -1 0");
        const QString digits = n < 10 ? QString::number(n) : QString("%1 , %2").arg(n / 10).arg(n % 10);
        add("spoken", (n == 4 ? "And After" : name + digits) + " -1 0");
    }
    void draw()
    {
        QList<int> left;
        for (int n = 1; n <= 75; ++n)
            left += m_called.count(n) ? QList<int>() : QList<int>{n};
        if (!left.isEmpty())
            return number(left[int(m_fraction * double(left.size()))]);
        add("boxes", "Vellomir: Full Board....");
        if (isOn("chkAutoCall"))
            startCalls(true);
    }
    void clear()
    {
        pause();
        if (isYes("Clearing board")) {
            m_last.clear();
            m_count = 0;
            put(m_pattern);
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
    void enter(const QString &text)
    {
        const bool hasLetter = !text.isEmpty() && QString("BINGOİı").contains(text[0].toUpper());
        bool isNumber = false;
        const double value = (hasLetter ? text.mid(1, 2) : text).trimmed().toDouble(&isNumber);
        const int n = isNumber && value > 0 && value < 76 ? int(std::nearbyint(value)) : 0;
        n >= 1 && n <= 75 ? number(n) : add("said", "Nothing called");
    }
    void setFontSize(const QString &text)
    {
        bool isNumber = false;
        const double size = qBound(5.0, text.toDouble(&isNumber), 100.0);
        now["iFontSize"] = text;
        if (isNumber) {
            m_red = m_called;
            now["points"] = QString::number(size);
            now["iFontSize"] = size == text.toDouble() ? text : now["points"];
            add("said", "Font size " + now["points"]);
        }
        toEntry();
    }

    // ---- Automatic calls
    void callByItself(bool on, bool counting)
    {
        now["chkAutoCall"] = on ? "on" : "off";
        now["countdown"] = counting ? "on" : "off";
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
    void playOrPause() { isOn("chkAutoCall") ? callByItself(true, !counts()) : void(); }
    void pause() { counts() ? callByItself(true, false) : void(); }
    void setInterval(const QString &seconds)
    {
        now["cboSec"] = seconds;
        focusOn("Text1");
        add("said", seconds + " seconds");
    }
    void second()
    {
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
        put(m_pattern == id ? 0 : id);
        focusOn("Text1");
        const QString caption = m_patterns[id][0], columns = m_patterns[id][1];
        add("said", caption + (m_pattern != id    ? " put away"
                               : m_called.empty() ? ", all columns in play"
                                                  : ", columns " + columns + " out of play"));
    }
    void put(int id)
    {
        m_pattern = id;
        m_forms = QString(m_patterns[id][2]).remove(' ').split('/');
        m_card = m_forms.size() == 1 ? m_forms[0] : QString(25, '.');
        now["next form"] = m_forms.size() > 1 ? "100" : "";
        m_called.clear();
        for (int n = 1; n <= 75; ++n) {
            if (isOn("mnuShaddow") && m_patterns[id][1].contains(label(n)[0]))
                m_called.insert(n);
        }
    }
    void nextForm()
    {
        if (now["next form"].isEmpty())
            return;
        m_forms += m_card = m_forms.takeFirst();
        now["next form"] = "1500";
    }
    void turn(int i)
    {
        m_card[i - 1] = isLit(i) ? '.' : 'X';
        focusOn("Text1");
        add("said", cell(i));
    }

    Facts now{{"iFontSize", "33"},  {"points", "33"},       {"cboSec", "10"},
              {"cPause", "Pause"},  {"chkAutoCall", "off"}, {"chkMakeVoiceCall", "off"},
              {"mnuShaddow", "on"}, {"focus", "Text1"},     {"countdown", "off"},
              {"front", "frmMain"}};
    QList<QStringList> m_patterns{{"", "", QString(25, '.')}};
    std::set<int> m_called, m_red;
    QList<int> m_last;
    QStringList m_forms;
    QString m_card = QString(25, '.'), m_answer;
    int m_count = 0, m_pattern = 0, m_left = 0;
    double m_fraction = 0.5;
};
