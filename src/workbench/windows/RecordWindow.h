#pragma once

#include "frame/desktop/Desktop.h"
#include "workbench/pages/RecordPage.h"

#include <QWidget>

#include <vector>

class QLabel;
class QListWidget;
class QPushButton;
class QStackedWidget;

namespace tavrin {
class CoverImage;
class TavrinSpellcheck;
} // namespace tavrin

namespace tavrin::workbench {

class Workspace;

/// One incident on its pages. What the person types stays in the window until the save has succeeded.
class RecordWindow final : public QWidget
{
    Q_OBJECT

public:
    /// `workspace` must outlive the window.
    RecordWindow(Workspace& workspace, RecordPtr record, QWidget* parent = nullptr);

    /// 0 until the incident is saved for the first time.
    qint64 incidentNo() const { return m_record->key(); }
    bool isDirty() const;
    /// Saves, or shows why not and leaves everything as it is. Returns whether all is saved.
    bool save();

Q_SIGNALS:
    void saved();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeHeader();
    QWidget* makeFooter();
    void addPages(QStringList& problems);
    void addPage(RecordPage* page);
    void showPage(int index);
    void checkSpelling();
    void showProblem(int page, QWidget* field, const QString& text);
    void tellNotSaved(const QString& text, BoxIcon icon);
    bool mayBeSaved();
    bool hasRequiredFields();
    void refreshState();
    void tellStatus(const QString& text);

    Workspace& m_workspace;
    RecordPtr m_record;
    std::vector<RecordPage*> m_pages;
    std::vector<Subscription> m_subscriptions;
    QLabel* m_title = nullptr;
    QLabel* m_subtitle = nullptr;
    CoverImage* m_cover = nullptr;
    TavrinSpellcheck* m_spelling = nullptr;
    QListWidget* m_navigation = nullptr;
    QStackedWidget* m_stack = nullptr;
    QLabel* m_status = nullptr;
    QPushButton* m_save = nullptr;
};

} // namespace tavrin::workbench
