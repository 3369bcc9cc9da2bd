#include "platform/linux/atspi/AtspiRoles.h"

#include "platform/linux/atspi/Libatspi.h"

using namespace Qt::StringLiterals;

namespace tavrin {

using namespace libatspi;

QString axRoleName(AtspiRole role, bool singleLine)
{
    switch (role) {
    case ATSPI_ROLE_TEXT:
    case ATSPI_ROLE_ENTRY:
        return singleLine ? u"AXTextField"_s : u"AXTextArea"_s;
    case ATSPI_ROLE_PASSWORD_TEXT:
    case ATSPI_ROLE_SPIN_BUTTON:
    case ATSPI_ROLE_EDITBAR:
    case ATSPI_ROLE_AUTOCOMPLETE:
        return u"AXTextField"_s;
    case ATSPI_ROLE_TERMINAL:
    case ATSPI_ROLE_PARAGRAPH:
    case ATSPI_ROLE_SECTION:
    case ATSPI_ROLE_HEADING:
    case ATSPI_ROLE_DOCUMENT_TEXT:
    case ATSPI_ROLE_DOCUMENT_EMAIL:
    case ATSPI_ROLE_DOCUMENT_FRAME:
        return u"AXTextArea"_s;
    case ATSPI_ROLE_DOCUMENT_WEB:
        return u"AXWebArea"_s;
    case ATSPI_ROLE_COMBO_BOX:
        return u"AXComboBox"_s;
    case ATSPI_ROLE_TABLE_CELL:
        return u"AXCell"_s;
    case ATSPI_ROLE_PUSH_BUTTON:
        return u"AXButton"_s;
    case ATSPI_ROLE_FRAME:
    case ATSPI_ROLE_WINDOW:
    case ATSPI_ROLE_DIALOG:
        return u"AXWindow"_s;
    default:
        return u"AXUnknown"_s;
    }
}

bool isSkippedInFocusSearch(AtspiRole role)
{
    switch (role) {
    case ATSPI_ROLE_MENU_BAR:
    case ATSPI_ROLE_MENU:
    case ATSPI_ROLE_TOOL_BAR:
    case ATSPI_ROLE_TABLE:
    case ATSPI_ROLE_TREE_TABLE:
    case ATSPI_ROLE_TREE:
    case ATSPI_ROLE_LIST:
        return true;
    default:
        return false;
    }
}

} // namespace tavrin
