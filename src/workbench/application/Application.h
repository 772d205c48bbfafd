#pragma once

#include <QApplication>

namespace tavrin::workbench {

/// The program. A failure that nothing else has caught is shown in a box, and the program goes on.
class Application final : public QApplication
{
    Q_OBJECT

public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
};

} // namespace tavrin::workbench
