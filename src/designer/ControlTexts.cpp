#include "designer/ControlTexts.h"

#include <QHash>

namespace tavrin::designer {

namespace {

QHash<QString, ControlTexts> allTexts()
{
    return {
        {QStringLiteral("AgencyPicker"),
         {QStringLiteral("One agency: grid combo and long text"),
          QStringLiteral(
              "A drop-down grid of the agencies, with the long text of the chosen one beside it. The host "
              "sets and reads it through TavrinControl; the value is the code's number, or Null.")}},
        {QStringLiteral("Attachments"),
         {QStringLiteral("The files of a record, their details and what a person does with them"),
          QStringLiteral(
              "Lists the files of a record, shows the details of the current one, adds files that are "
              "dropped on it, opens and downloads them. The host reads and writes it through "
              "BoundSection.")}},
        {QStringLiteral("AutoCompleteField"),
         {QStringLiteral("One code of a long table, by free search"),
          QStringLiteral(
              "The person types at least three characters; the codes that hold them open in a list. Name "
              "the code table in TableNo. For a short table that is known by heart take "
              "TavrinDropdown.")}},
        {QStringLiteral("CoverImage"),
         {QStringLiteral("The cover of a record: its primary image"),
          QStringLiteral("Shows the primary image among the attachments of a record, for instance beside the "
                         "record's title. The host fills it through BoundSection.")}},
        {QStringLiteral("EmployeePicker"),
         {QStringLiteral("One employee: combo box and name"),
          QStringLiteral(
              "Searches the employees by number and name, and shows the name beside the box. The value is "
              "the employee's record number, or Null. FlatEmployeePicker does the same in the flat "
              "look.")}},
        {QStringLiteral("FlatEmployeePicker"),
         {QStringLiteral("One employee: flat, with a caption and a tag"),
          QStringLiteral(
              "Searches the employees in the flat look: a caption above, and the chosen one as a tag in "
              "the box. The value is the employee's record number, or Null.")}},
        {QStringLiteral("FlatUserPicker"),
         {QStringLiteral("One user or one team: flat, with a caption and a tag"),
          QStringLiteral(
              "Searches users and teams in the flat look. The value is a text, \"user:\" or \"team:\" "
              "with the identifier, or Null. For an employee who need not be a user take "
              "FlatEmployeePicker.")}},
        {QStringLiteral("LatLong"),
         {QStringLiteral("The coordinates of a location, geocoded or typed"),
          QStringLiteral(
              "Shows the coordinates of a location with the result of the last geocoding, or lets a "
              "person type them. The host reads and writes it through BoundSection.")}},
        {QStringLiteral("MultiValue"),
         {QStringLiteral("Several codes of one table: a list with \"+\" and \"-\""),
          QStringLiteral(
              "Keeps several codes of one table, each in a child row of the record. The host binds it to "
              "field and table through BoundControl.")}},
        {QStringLiteral("NibrsOffensePicker"),
         {QStringLiteral("One NIBRS offense code: a plain drop-down"),
          QStringLiteral(
              "A drop-down over the offense codes of the National Incident-Based Reporting System, with "
              "\"(None)\" first. The value is the code as text, or Null.")}},
        {QStringLiteral("OffensePicker"),
         {QStringLiteral("One offense: combo box and description"),
          QStringLiteral(
              "Searches the offenses by code and description, and shows the description beside the box. "
              "The value is the offense's record number, or Null.")}},
        {QStringLiteral("SuspRelList"),
         {QStringLiteral("A suspect's relationships to parties of one kind: a list with a menu"),
          QStringLiteral(
              "Lists how a suspect relates to the parties of one other kind, and may refuse a save. Name "
              "their collection in OtherCollectionTag, what one of them is called in OtherItemName, and "
              "the field that numbers them in OtherItemSeqName.")}},
        {QStringLiteral("TavrinDropdown"),
         {QStringLiteral("One code of a short table: a plain drop-down"),
          QStringLiteral(
              "A drop-down over a code table, with \"(None)\" first and an icon beside the text. Name the "
              "code table in TableNumber. AutoCompleteField searches a long one.")}},
        {QStringLiteral("TavrinSpellcheck"),
         {QStringLiteral("Checks the spelling of any text box, in a dialog"),
          QStringLiteral(
              "The form's code hands it a text box; it walks through the words in a dialog, and words "
              "that a person adds become the words of all workstations.")}},
    };
}

} // namespace

ControlTexts textsOf(const QString& control)
{
    static const QHash<QString, ControlTexts> texts = allTexts();
    return texts.value(control);
}

} // namespace tavrin::designer
