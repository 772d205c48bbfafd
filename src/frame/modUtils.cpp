#include "frame/modUtils.h"

#include "base/failure/Error.h"
#include "base/lists/GridCombo.h"
#include "base/values/Variant.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Host.h"
#include "widgets/drawing/PictureSurface.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavrin::modUtils {

namespace {

constexpr int ValueColumn = 2;
constexpr int FirstRow = 1;

std::shared_ptr<NibrsModuleService>& keptNibrsModule()
{
    thread_local std::shared_ptr<NibrsModuleService> module;
    return module;
}

bool namesSomething(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink(); // a dangling link occupies its name too
}

/// The box behind a match: red 0x7E, green 0xE7, blue 0xFC.
constexpr Color MatchColor(0x00FCE77E);

void printMatch(PictureSurface& picture, const QString& piece)
{
    picture.SetFontBold(true);
    // Mask-pen lets the box take on what lies below it, so that the mark shows on a selected row too.
    picture.SetDrawMode(DrawMode::MaskPen);
    const Twips x = picture.CurrentX();
    const Twips y = picture.CurrentY();
    picture.DrawBox(x, y, x + picture.TextWidth(piece), y + picture.TextHeight(piece), MatchColor);
    picture.SetCurrentX(x);
    picture.SetCurrentY(y);
    picture.Print(piece);
}

} // namespace

double MinOf(double a, double b)
{
    return a < b ? a : b;
}

double MaxOf(double a, double b)
{
    return a > b ? a : b;
}

qint32 Ceiling(double value)
{
    return ToLong(-std::floor(-value));
}

namespace {

/// The host knows the units; but a designer has none, and twips need nobody's answer.
ScaleMode scaleModeOf(const QString& units)
{
    Host* host = nullptr;
    try {
        host = &currentHost();
    } catch (const Error&) {
        if (units != QLatin1String("Twip"))
            throw;
    }
    return host ? host->uiServices().ScaleModeFromUnits(units) : ScaleMode::Twips;
}

} // namespace

void ResizeTwips(UserControl& control, float width, float height)
{
    try {
        const ScaleMode mode = scaleModeOf(control.ambient().ScaleUnits());
        control.SetWidth(width);
        control.SetHeight(height);
        control.extender().SetWidth(control.ScaleX(width, ScaleMode::Twips, mode));
        control.extender().SetHeight(control.ScaleY(height, ScaleMode::Twips, mode));
    } catch (...) {
        throw Error(QStringLiteral("ResizeTwips error: Error resizing instance of %1 (%2)")
                        .arg(control.typeName(), Error::fromCurrentException().Description));
    }
}

QString UniqueFileName(const QString& path)
{
    if (!namesSomething(path))
        return path;
    qsizetype end = path.size(); // of the last component, whatever separators stand behind it
    while (end > 1 && path.at(end - 1) == u'/')
        --end;
    const QFileInfo given(path.left(end));
    const QString folder = path.left(end - given.fileName().size()); // with its separator
    const QString ending = given.suffix().isEmpty() ? QString() : u'.' + given.suffix();
    for (qint32 n = 1; n < std::numeric_limits<qint32>::max(); ++n) {
        const QString name =
            QStringLiteral("%1 (%2)%3").arg(given.completeBaseName(), QString::number(n), ending);
        if (!namesSomething(folder + name))
            return folder + name;
    }
    throw Error(QStringLiteral("Overflow"), Error::OverflowNumber);
}

bool IsValidFolderName(const QString& name)
{
    const auto isBlank = [](QChar character) { return character == u' '; };
    if (std::all_of(name.begin(), name.end(), isBlank))
        return false;
    const QString forbidden = InvalidNameCharacters();
    return std::none_of(name.begin(), name.end(),
                        [&](QChar character) { return forbidden.contains(character); });
}

QString InvalidNameCharacters()
{
    return QStringLiteral("<>:\"/\\|?*");
}

std::shared_ptr<NibrsModuleService> NibrsModule()
{
    auto& module = keptNibrsModule();
    if (!module)
        module = currentHost().createNibrsModule(QStringLiteral("NIBRS.Singletons"));
    return module;
}

void ReleaseNibrsModule()
{
    keptNibrsModule().reset();
}

void PrintHighlighted(PictureSurface& picture, const QString& text, const QString& search)
{
    const bool bold = picture.FontBold();
    const auto printNormal = [&](const QString& piece) {
        picture.SetFontBold(bold);
        picture.SetDrawMode(DrawMode::CopyPen);
        picture.Print(piece);
    };
    qsizetype printed = 0;
    for (;;) {
        const qsizetype match = search.isEmpty() ? -1 : text.indexOf(search, printed, Qt::CaseInsensitive);
        if (match < 0)
            break;
        printNormal(text.mid(printed, match - printed));
        printMatch(picture, text.mid(match, search.size()));
        printed = match + search.size();
    }
    printNormal(text.mid(printed));
}

void InitGridCombo(GridCombo& combo)
{
    combo.ResetArray();
    combo.Rebind();
    combo.SetBookmark(FirstRow);
    combo.SetText(QString());
}

void FillGridCombo(GridCombo& combo, TableNumber tableNumber, const QVariant& value, bool flag)
{
    InitGridCombo(combo);
    currentHost().listFilling().FillTableGrid(tableNumber, combo, flag, value, false);
}

QVariant SelectGridComboValue(GridCombo& combo, const QVariant& value)
{
    if (IsNull(value)) {
        combo.SetBookmark(FirstRow);
        return Null();
    }
    const int found = combo.Array().Find(FirstRow, ValueColumn, ToLong(value));
    const int row = found == 0 ? FirstRow : found;
    if (row > combo.Array().UpperBound()) { // an empty list
        combo.SetBookmark(row);
        return combo.Array().Value(row, ValueColumn); // raises
    }
    QVariant selected = combo.Array().Value(row, ValueColumn);
    combo.SetBookmark(row); // whose followers may delete the combo
    return selected;
}

void RemoveUsedGridValues(GridCombo& combo, const QVariantList& used, const QVariant& current)
{
    QVariantList taken;
    for (const QVariant& value : used) {
        if (!IsNull(value) && !GridArray::IsSame(value, current))
            taken << value;
    }
    combo.Array().DeleteFirstOfEach(FirstRow + 1, ValueColumn, taken);
    combo.Rebind();
}

} // namespace tavrin::modUtils
