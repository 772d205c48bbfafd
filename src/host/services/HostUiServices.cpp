#include "host/services/HostUiServices.h"

namespace tavrin {

TextBoxColors HostUiServices::TextBoxColors()
{
    return m_theme == Theme::Dark ? darkColors() : lightColors();
}

} // namespace tavrin
