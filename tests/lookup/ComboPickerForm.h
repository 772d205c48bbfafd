#pragma once

#include "base/xml/XmlDocument.h"
#include "support/Fakes.h"
#include "support/RaisedError.h"
#include "testing/FakeHost.h"
#include "widgets/drawing/PictureSurface.h"
#include "widgets/labels/Label.h"
#include "widgets/search_box/AutoCompleteComboBox.h"
#include "widgets/search_box/SuggestionView.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVariantList>

namespace tavrin::test {

/// Names and texts of the children of one record.
using RecordParts = std::vector<std::pair<const char*, QString>>;

inline XmlDocument listOf(const char* root, const char* record, const std::vector<RecordParts>& records)
{
    XmlDocument document;
    const XmlNode list = document.appendChild(document.createElement(QString::fromLatin1(root)));
    for (const RecordParts& parts : records) {
        const XmlNode node = list.appendElement(QString::fromLatin1(record));
        for (const auto& [name, text] : parts)
            node.appendElement(QString::fromLatin1(name), text);
    }
    return document;
}

/// One record of that name.
inline XmlNode recordOf(const char* record, const RecordParts& parts)
{
    return listOf("L", record, {parts}).documentElement().childElement(QString::fromLatin1(record));
}

inline RecordParts employee(int number, const char* id, const char* name, const char* badge, bool active,
                            bool k9 = false)
{
    return {{"OfficerNo", QString::number(number)},
            {"OfficerId", QString::fromUtf8(id)},
            {"Name", QString::fromUtf8(name)},
            {"BadgeNo", QString::fromUtf8(badge)},
            {"ActiveFlag", active ? QStringLiteral("True") : QStringLiteral("False")},
            {"IsK9Handler", k9 ? QStringLiteral("True") : QString()}};
}

inline XmlDocument comboEmployees()
{
    return listOf("Employees", "Employee",
                  {employee(11, "A11", "Adams, Ann", "501", true),
                   employee(12, "B12", "Baker, Bob", "115", false),
                   employee(13, "C13", "Cole, Carl", "77", true, true),
                   employee(14, "D14", "O'Hara, \"Red\"", "  ", true),
                   employee(15, "E15", "Dane, Dora", "", false, true),
                   employee(16, "F16", "Adamson, Al", "150", true, true)});
}

inline RecordParts offense(int number, const char* id, const char* description, const char* code,
                           const char* active)
{
    return {{"OffenseNo", QString::number(number)},
            {"OffenseId", QString::fromUtf8(id)},
            {"Description", QString::fromUtf8(description)},
            {"RptCode", QString::fromUtf8(code)},
            {"ActiveFlag", QString::fromUtf8(active)}};
}

inline XmlDocument sampleOffenses()
{
    return listOf("Offenses", "Offense",
                  {offense(31, "13A", "Aggravated Assault", "X100", "1"),
                   offense(32, "13B", "Simple Assault", "X131", "0"),
                   offense(33, "220", "Burglary", "Y200", "1"),
                   offense(34, "240", "Vehicle Theft", "Y13A", "1"),
                   offense(35, "999", "Written as a text", "Z1", "True")});
}

/// A host with the sample employees.
struct EmployeeSite
{
    EmployeeSite()
        : installation(host)
    {
        host.state().employees = comboEmployees();
    }

    FakeHost host;
    HostInstallation installation;
};

/// Notes what is printed, where and in which font. A letter is 100 twips wide, in bold 120, and 200 high.
class RowRecorder final : public PictureSurface
{
public:
    Twips CurrentX() const override { return m_x; }
    void SetCurrentX(Twips x) override { m_x = x; }
    Twips CurrentY() const override { return m_y; }
    void SetCurrentY(Twips y) override { m_y = y; }
    void SetFont(const Font& font) override { m_font = font.Name(); }
    void SetFontName(const QString& name) override { m_font = name; }
    double FontSize() const override { return m_size; }
    void SetFontSize(double points) override { m_size = points; }
    bool FontBold() const override { return m_bold; }
    void SetFontBold(bool bold) override { m_bold = bold; }
    void SetForeColor(Color) override { calls << QStringLiteral("colour"); }
    void SetDrawMode(DrawMode) override {}
    Twips TextWidth(const QString& text) const override
    {
        return (m_bold ? 120.0F : 100.0F) * static_cast<float>(text.size());
    }
    Twips TextHeight(const QString&) const override { return 200; }
    void Print(const QString& text) override
    {
        if (text.isEmpty())
            return;
        calls << QStringLiteral("%1 %2%3 \"%4\" at %5")
                     .arg(m_font)
                     .arg(m_size)
                     .arg(m_bold ? QStringLiteral(" bold") : QString(), text)
                     .arg(m_x);
        m_x += TextWidth(text);
    }
    void EndLine() override
    {
        calls << QStringLiteral("line");
        m_x = 0;
        m_y += 200;
    }
    void DrawBox(Twips x1, Twips, Twips x2, Twips y2, Color) override
    {
        calls << QStringLiteral("box %1 to %2").arg(x1).arg(x2);
        m_x = x2;
        m_y = y2;
    }
    Twips Width() const override { return 9999; }
    void SetWidth(Twips width) override { calls << QStringLiteral("width %1").arg(width); }
    Twips Height() const override { return 9999; }
    void SetHeight(Twips height) override { calls << QStringLiteral("height %1").arg(height); }

    QStringList calls;

private:
    QString m_font = QStringLiteral("Another");
    double m_size = 20;
    bool m_bold = false;
    Twips m_x = 0;
    Twips m_y = 0;
};

/// A form with one picker over the sample lists, and another box to go to.
template <typename Picker>
struct ComboPickerForm
{
    explicit ComboPickerForm(int width = 300)
        : installation(host)
    {
        host.state().employees = comboEmployees();
        host.state().offenses = sampleOffenses();
        picker = new Picker(&window);
        picker->setGeometry(20, 20, width, 30);
        box = picker->template findChild<AutoCompleteComboBox*>(QStringLiteral("acComboBox"));
        label = picker->template findChild<Label*>(QStringLiteral("lblDescription"));
        other = new QLineEdit(&window);
        other->move(20, 300);
        window.resize(800, 400);
        window.show();
        window.activateWindow();
        picker->setFocus();
    }

    bool isReady() { return QTest::qWaitForWindowActive(&window) && box && label && box->hasFocus(); }

    void type(const QString& text) { QTest::keyClicks(box, text); }
    void paste(const QString& text)
    {
        QGuiApplication::clipboard()->setText(text);
        QTest::keySequence(box, QKeySequence::Paste);
    }
    /// Empties the box as a person does.
    void emptyBox()
    {
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Delete);
    }
    SuggestionView* view() const
    {
        return window.template findChild<SuggestionView*>(QStringLiteral("suggestions"));
    }
    /// What the open list shows, row by row.
    QStringList rows() const
    {
        QStringList texts;
        for (int row = 0; box->ListIsOpen() && row < view()->rowCount(); ++row)
            texts << view()->rowText(row);
        return texts;
    }
    void clickRow(int row) const
    {
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, Qt::NoModifier, view()->rowRect(row).center());
    }

    /// What the box gets for a query, record by record; an error of the search reaches the caller.
    Suggestions search(const QString& query) const
    {
        Suggestions results;
        box->SearchRequested.raise(query, results);
        return results;
    }
    /// The texts that the records of a search would have in the box.
    QStringList found(const QString& query = {}) const
    {
        QStringList texts;
        for (const XmlNode& item : search(query)) {
            QString text;
            box->GetItemText.raise(item, text);
            texts << text;
        }
        return texts;
    }
    /// The calls by which a record is painted.
    QStringList drawn(const XmlNode& item, const QString& query = {}, bool selected = false) const
    {
        RowRecorder picture;
        box->DrawItem.raise(picture, item, query, selected);
        return picture.calls;
    }
    /// The description of the error of a search; "" for none.
    QString searchError(const QString& query = {}) const
    {
        return raisedBy([&] { search(query); }).Description;
    }
    void hold(const QVariant& value, const QVariantList& used = {}) const
    {
        static_cast<TavrinControl*>(picker)->SetValue(value, std::make_shared<QVariantList>(used));
    }
    /// Notes the control's events with the value at that moment.
    void follow()
    {
        QObject::connect(picker, &Picker::Change, &window, [this] { note(QStringLiteral("Change")); });
        QObject::connect(picker, &Picker::ItemSelect, &window,
                         [this] { note(QStringLiteral("ItemSelect")); });
        QObject::connect(picker, &Picker::PropertyChanged, &window,
                         [this](const QString& key) { note(key); });
    }
    QStringList take() { return std::exchange(journal, {}); }

    FakeHost host;
    HostInstallation installation;
    QWidget window;
    Picker* picker = nullptr;
    AutoCompleteComboBox* box = nullptr;
    Label* label = nullptr;
    QLineEdit* other = nullptr;
    QStringList journal;

private:
    void note(const QString& what)
    {
        const QVariant value = picker->Value();
        journal << what + QLatin1Char(' ') + (value.isNull() ? QStringLiteral("Null") : value.toString());
    }
};

} // namespace tavrin::test
