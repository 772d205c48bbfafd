#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Caches.h"

#include <QString>
#include <QVariantList>

#include <memory>

namespace tavrin {
class GridCombo;
class PictureSurface;
class UserControl;
} // namespace tavrin

/// What several controls need and none owns.
namespace tavrin::modUtils {

/// For equal values the second.
double MinOf(double a, double b);
/// For equal values the second.
double MaxOf(double a, double b);
/// The smallest integer not below the value. Raises error 6 when it does not fit into 32 bits.
qint32 Ceiling(double value);

/// Sets a control's size in twips, and its size on a container that may count in other units.
/// The host is asked for the units; without a host, as in a designer, only "Twip" is known. Any failure is
/// raised again as error 5, naming the control's type.
void ResizeTwips(UserControl& control, float width, float height);

/// A path that names nothing yet: the given one, or one with " (1)", " (2)" ... behind its base name.
QString UniqueFileName(const QString& path);
/// False for a name of blanks alone and for one with a character of `InvalidNameCharacters`.
bool IsValidFolderName(const QString& name);
/// `<>:"/\|?*`
QString InvalidNameCharacters();

/// Prints `text` at the picture's current position, every occurrence of `search` in any case in bold on a
/// coloured box, and leaves the position behind it.
void PrintHighlighted(PictureSurface& picture, const QString& text, const QString& search);

/// The host's NIBRS module, created on first use and kept for the thread. Raises what its creation raises.
TAVRIN_COMPANION_EXPORT std::shared_ptr<NibrsModuleService> NibrsModule();
/// Forgets the module; for a thread that installs another host.
TAVRIN_COMPANION_EXPORT void ReleaseNibrsModule();

// The grid combo: rows counted from 1, the value in column 2, row 1 the empty row.

/// Gives the combo a new empty array, makes row 1 current and empties the text.
void InitGridCombo(GridCombo& combo);
void FillGridCombo(GridCombo& combo, TableNumber tableNumber, const QVariant& value, bool flag);
/// Makes the row of the value current, else row 1, and returns the value of that row; Null for Null.
QVariant SelectGridComboValue(GridCombo& combo, const QVariant& value);
/// Deletes for each used value other than Null and `current` the first row behind row 1 that holds it. A text
/// that says a number is that number, to the rows and to `current` alike.
void RemoveUsedGridValues(GridCombo& combo, const QVariantList& used, const QVariant& current);

} // namespace tavrin::modUtils
