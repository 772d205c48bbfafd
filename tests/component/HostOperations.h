#pragma once

#include "base/lists/DropdownTarget.h"
#include "base/values/Variant.h"
#include "component/Program.h"
#include "frame/host_contracts/Host.h"
#include "testing/FakeDropdown.h"
#include "testing/FakeGridCombo.h"

namespace tavrin::test {

/// How a program answers.
using Answering = Program::Answering;

inline Answering answerText(const char* answer)
{
    return [answer](const TvVariant*, TvVariant* result) { return library().SetText(result, answer); };
}

inline Answering answerValue(const TvVariant& answer)
{
    return [answer](const TvVariant*, TvVariant* result) {
        *result = answer;
        return TV_S_OK;
    };
}

inline Answering answerNothing()
{
    return [](const TvVariant*, TvVariant*) { return TV_S_OK; };
}

inline Answering answerBlue()
{
    return [](const TvVariant*, TvVariant* result) { return Program::setBlue(result); };
}

inline QString textOf(const QImage& image)
{
    return QStringLiteral("%1x%2").arg(image.width()).arg(image.height());
}

inline QString filledCombo()
{
    testing::FakeDropdown combo;
    currentHost().listFilling().FillTableCombo(302, combo, true, 5, false);
    return combo.ListCount() == 2 ? combo.List(1) : QStringLiteral("%1 entries").arg(combo.ListCount());
}

inline QString filledGrid()
{
    testing::FakeGridCombo combo;
    currentHost().listFilling().FillTableGrid(302, combo, true, 5, false);
    return combo.Array().UpperBound() == 2 ? ToText(combo.Array().Value(2, 1))
                                           : QStringLiteral("another number of rows");
}

inline QString uploaded()
{
    const auto uploader = currentHost().newUploader();
    QString told;
    const Subscription complete =
        uploader->UploadComplete.subscribe([&](const QString& path, bool) { told = path; });
    uploader->Upload(QStringLiteral("/tmp/a.png"), QStringLiteral("2024\\a.png"), {});
    return told;
}

inline QString downloaded()
{
    const auto downloader = currentHost().newDownloader();
    QStringList told;
    const Subscription started = downloader->DownloadStarted.subscribe(
        [&](const QString& path) { told << QStringLiteral("start ") + path; });
    const Subscription complete =
        downloader->DownloadComplete.subscribe([&](const QString& path, bool canceled) {
            told << (canceled ? QStringLiteral("canceled ") : QStringLiteral("end ")) + path;
        });
    told << downloader->Download(QStringLiteral("2024\\a.png"));
    return told.join(QStringLiteral(", "));
}

inline const auto OneValue = R"([{"ID": "G", "DisplayText": "Gun", "Value": 5}])";

/// One operation of the host's services: who asks for it, what the program must hear, what it answers, and
/// what the one who asked then has.
struct Operation
{
    const char* name;
    std::function<QString()> ask;
    QStringList arguments;
    Answering answer;
    QString result;
};

inline const std::vector<Operation>& operations()
{
    static const std::vector<Operation> all{
        {"HostServices.GetTableValues/2",
         [] { return currentHost().hostServices().GetTableValues(302, true).Items.value(0).DisplayText; },
         {QStringLiteral("long 302"), QStringLiteral("true")},
         answerText(OneValue),
         QStringLiteral("Gun")},
        {"HostServices.DateDisplayFormat/0",
         [] { return currentHost().hostServices().DateDisplayFormat(); },
         {},
         answerText("dd.MM.yyyy"),
         QStringLiteral("dd.MM.yyyy")},
        {"HostServices.SyncCustomDictionaryFile/0",
         [] {
             currentHost().hostServices().SyncCustomDictionaryFile();
             return QString();
         },
         {},
         answerNothing(),
         {}},
        {"HostServices.NotifyFileUploaded/0",
         [] {
             currentHost().hostServices().NotifyFileUploaded();
             return QString();
         },
         {},
         answerNothing(),
         {}},
        {"Session.CurrentUserId/0",
         [] { return currentHost().session().CurrentUserId(); },
         {},
         answerText("asmith"),
         QStringLiteral("asmith")},
        {"Session.GetSetting/2",
         [] {
             return currentHost().session().GetSetting(QStringLiteral("_Global"), QStringLiteral("Folder"));
         },
         {QStringLiteral("text \"_Global\""), QStringLiteral("text \"Folder\"")},
         answerText("/store"),
         QStringLiteral("/store")},
        {"Session.HasPermission/2",
         [] { return ToText(currentHost().session().HasPermission(QStringLiteral("tvIncidentBO"), 20)); },
         {QStringLiteral("text \"tvIncidentBO\""), QStringLiteral("long 20")},
         answerValue(of(true)),
         QStringLiteral("True")},
        {"Session.FieldExists/3",
         [] {
             return ToText(currentHost().session().FieldExists(
                 QStringLiteral("Incident"), QStringLiteral("Employee"), QStringLiteral("K9")));
         },
         {QStringLiteral("text \"Incident\""), QStringLiteral("text \"Employee\""),
          QStringLiteral("text \"K9\"")},
         answerValue(of(true)),
         QStringLiteral("True")},
        {"Session.IsFieldRequired/4",
         [] {
             return ToText(currentHost().session().IsFieldRequired(
                 QStringLiteral("Incident"), QStringLiteral("IncdSusp"), QStringLiteral("No"),
                 QStringLiteral("more")));
         },
         {QStringLiteral("text \"Incident\""), QStringLiteral("text \"IncdSusp\""),
          QStringLiteral("text \"No\""), QStringLiteral("text \"more\"")},
         answerValue(of(true)),
         QStringLiteral("True")},
        {"UiServices.ShadeColor/2",
         [] { return QString::number(currentHost().uiServices().ShadeColor(Color(0xFF), 0.5).value(), 16); },
         {QStringLiteral("colour ff"), QStringLiteral("double 0.5")},
         answerValue(colored(0x7FU)),
         QStringLiteral("7f")},
        {"UiServices.ScaleModeFromUnits/1",
         [] {
             return QString::number(
                 int(currentHost().uiServices().ScaleModeFromUnits(QStringLiteral("Ells"))));
         },
         {QStringLiteral("text \"Ells\"")},
         answerValue(of(3)),
         QStringLiteral("3")},
        {"UiServices.TextBoxColors/0",
         [] {
             return QString::number(currentHost().uiServices().TextBoxColors().Disabled.TagForeColor.value(),
                                    16);
         },
         {},
         answerText(R"({"Disabled": {"TagForeColor": 255}})"),
         QStringLiteral("ff")},
        {"ListFilling.FillTableCombo/3",
         filledCombo,
         {QStringLiteral("long 302"), QStringLiteral("true"), QStringLiteral("long 5")},
         answerText(OneValue),
         QStringLiteral("Gun")},
        {"ListFilling.FillTableGrid/3",
         filledGrid,
         {QStringLiteral("long 302"), QStringLiteral("true"), QStringLiteral("long 5")},
         answerText(OneValue),
         QStringLiteral("Gun")},
        {"ListFilling.FitPicture/6",
         [] {
             return textOf(currentHost().listFilling().FitPicture(QImage(4, 3, QImage::Format_RGB32), 20, 30,
                                                                  1, true, Color(0xFFFFFF), false));
         },
         {QStringLiteral("picture 4x3"), QStringLiteral("long 20"), QStringLiteral("long 30"),
          QStringLiteral("long 1"), QStringLiteral("true"), QStringLiteral("colour ffffff")},
         answerBlue(),
         QStringLiteral("2x2")},
        {"Images.IsImageFile/1",
         [] { return ToText(currentHost().images().IsImageFile(QStringLiteral("a.webp"))); },
         {QStringLiteral("text \"a.webp\"")},
         answerValue(of(true)),
         QStringLiteral("True")},
        {"Images.LoadPicture/1",
         [] { return textOf(currentHost().images().LoadPicture(QStringLiteral("a.webp"))); },
         {QStringLiteral("text \"a.webp\"")},
         answerBlue(),
         QStringLiteral("2x2")},
        {"Environment.GetDictionaryFolder/0",
         [] { return currentHost().environment().GetDictionaryFolder(); },
         {},
         answerText("/words"),
         QStringLiteral("/words")},
        {"Environment.GetDownloadsFolder/0",
         [] { return currentHost().environment().GetDownloadsFolder(); },
         {},
         answerText("/downloads"),
         QStringLiteral("/downloads")},
        {"Environment.RefreshSupportFile/1",
         [] {
             currentHost().environment().RefreshSupportFile(QStringLiteral("vssp_ae.dct"));
             return QString();
         },
         {QStringLiteral("text \"vssp_ae.dct\"")},
         answerNothing(),
         {}},
        {"Environment.GetErrorNumber/1",
         [] { return QString::number(currentHost().environment().GetErrorNumber(7)); },
         {QStringLiteral("long 7")},
         answerValue(of(-70)),
         QStringLiteral("-70")},
        {"TableCodeCache.Document/1",
         [] { return currentHost().newTableCodeCache()->Document(302).xml(); },
         {QStringLiteral("long 302")},
         answerText("<TableCodes/>"),
         QStringLiteral("<TableCodes/>")},
        {"TableCodeCache.GetDescription/2",
         [] { return currentHost().newTableCodeCache()->GetDescription(302, 5); },
         {QStringLiteral("long 302"), QStringLiteral("long 5")},
         answerText("Gun"),
         QStringLiteral("Gun")},
        {"EmployeeListCache.Document/0",
         [] { return currentHost().newEmployeeListCache()->Document().xml(); },
         {},
         answerText("<Employees/>"),
         QStringLiteral("<Employees/>")},
        {"EmployeeListCache.ShortText/1",
         [] { return currentHost().newEmployeeListCache()->ShortText(11); },
         {QStringLiteral("long 11")},
         answerText("A11"),
         QStringLiteral("A11")},
        {"EmployeeListCache.FullText/1",
         [] { return currentHost().newEmployeeListCache()->FullText(11); },
         {QStringLiteral("long 11")},
         answerText("Ann Ash"),
         QStringLiteral("Ann Ash")},
        {"OffenseListCache.Document/0",
         [] { return currentHost().newOffenseListCache()->Document().xml(); },
         {},
         answerText("<Offenses/>"),
         QStringLiteral("<Offenses/>")},
        {"OffenseListCache.ShortText/1",
         [] { return currentHost().newOffenseListCache()->ShortText(31); },
         {QStringLiteral("long 31")},
         answerText("13A"),
         QStringLiteral("13A")},
        {"OffenseListCache.FullText/1",
         [] { return currentHost().newOffenseListCache()->FullText(31); },
         {QStringLiteral("long 31")},
         answerText("Assault"),
         QStringLiteral("Assault")},
        {"UsersCache.Document/0",
         [] { return currentHost().newUsersCache()->Document().xml(); },
         {},
         answerText("<Users/>"),
         QStringLiteral("<Users/>")},
        {"UsersCache.UserDisplayName/1",
         [] { return currentHost().newUsersCache()->UserDisplayName(QStringLiteral("asmith")); },
         {QStringLiteral("text \"asmith\"")},
         answerText("Ann Smith"),
         QStringLiteral("Ann Smith")},
        {"ThumbnailService.GetThumbnailPath/1",
         [] {
             return ToText(currentHost().newThumbnailService()->GetThumbnailPath(QStringLiteral("a.png")));
         },
         {QStringLiteral("text \"a.png\"")},
         answerText("/small/a.png"),
         QStringLiteral("/small/a.png")},
        {"AttachmentFolders.GetFolderPath/1",
         [] { return currentHost().newAttachmentFolders()->GetFolderPath(4); },
         {QStringLiteral("long 4")},
         answerText("/store/4"),
         QStringLiteral("/store/4")},
        {"CustomDictionary.AddWord/1",
         [] {
             currentHost().newCustomDictionary()->AddWord(QStringLiteral("gazebo"));
             return QString();
         },
         {QStringLiteral("text \"gazebo\"")},
         answerNothing(),
         {}},
        {"Downloader.Download/1",
         downloaded,
         {QStringLiteral("text \"2024\\a.png\"")},
         answerText("/tmp/copy"),
         QStringLiteral("start 2024\\a.png, end 2024\\a.png, /tmp/copy")},
        {"Uploader.Upload/2",
         uploaded,
         {QStringLiteral("text \"/tmp/a.png\""), QStringLiteral("text \"2024\\a.png\"")},
         answerNothing(),
         QStringLiteral("/tmp/a.png")},
        {"NIBRS.Singletons.GetNibrsOffenseCodeList/0",
         [] {
             return currentHost()
                 .createNibrsModule(QStringLiteral("NIBRS.Singletons"))
                 ->GetNibrsOffenseCodeList()
                 .value(0)
                 .second;
         },
         {},
         answerText(R"([["13A", "Assault"]])"),
         QStringLiteral("Assault")}};
    return all;
}

} // namespace tavrin::test
