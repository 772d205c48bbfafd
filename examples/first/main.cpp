//! [program]
#include <QApplication>
#include <QMessageBox>
#include <QVBoxLayout>
#include <QWidget>

#include <TVBoundControls/AutoCompleteField.h>
#include <TVBoundControls/Database.h>
#include <TVBoundControls/Error.h>
#include <TVBoundControls/ReferenceHost.h>
#include <TVBoundControls/SampleData.h>

using namespace tavrin;

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    try {
        const auto database = Database::open(QStringLiteral("records.sqlite"));
        SampleData().fillOnce(*database); // a new database gets its code tables and sample records
        ReferenceHost host(*database, {QStringLiteral("admin"), {}, {}});
        const HostInstallation installed(host); // any host will do that derives from Host

        QWidget form;
        auto* weapon = new AutoCompleteField(&form);
        weapon->SetTableNo(302); // the code table to search
        weapon->SetText(QStringLiteral("13 - Rifle"));
        weapon->SetValue(13); // Null() when nothing is chosen
        (new QVBoxLayout(&form))->addWidget(weapon);
        form.show();
        return QApplication::exec();
    } catch (const Error& error) { // such as a folder in which nothing can be written
        QMessageBox::critical(nullptr, {}, error.Description);
        return 1;
    }
}
//! [/program]
