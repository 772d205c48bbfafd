#include "designer/ControlCollection.h"

#include "component/ClassRegister.h"
#include "designer/ControlPlugin.h"

namespace tavrin::designer {

ControlCollection::ControlCollection(QObject* parent)
    : QObject(parent)
{
    for (const QString& className : publicControls().classNames())
        m_controls.append(new ControlPlugin(className, this));
}

} // namespace tavrin::designer
