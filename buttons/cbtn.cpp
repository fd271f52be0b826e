#include "buttons/cbtn.h"

namespace tarn {

const ControlClass cbtn::Class = {
    L"cbtn",
    L"Tarn Controls button",
    &CLSID_cbtn,
    &IID_Icbtn,
    &DIID_IcbtnEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_ACTSLIKEBUTTON,
    &cbtn::Create,
    true, // draws itself, touches no file and no other window
};

void cbtn::ReadProperties(PropertyBag &bag)
{
    read_face_keys(bag);
    step([&] { face_.back = bag.read_color(L"BACKCOLOR", GetSysColor(COLOR_BTNFACE)); });
    step([&] { SetBackColor(face_.back); });
    step([&] { face_.fore = bag.read_color(L"FORECOLOR", GetSysColor(COLOR_BTNTEXT)); });
    step([&] { face_.picBOXdis.Picture = bag.read_picture(L"PICTUREDIS", nullptr); });
    read_mouse_keys(bag);
}

void cbtn::WriteProperties(PropertyBag &bag)
{
    // Every value is written whatever it is (no defaults).
    step([&] { bag.write_color(L"MASKHLIGHT", face_.mask); });
    step([&] { bag.write_picture(L"PICTURE", face_.picBOX.Picture.get()); });
    step([&] { bag.write_picture(L"PICTUREDIS", face_.picBOXdis.Picture.get()); });
    step([&] { bag.write_int(L"BTYPE", face_.type); });
    step([&] { bag.write_string(L"TOOLTIP", tooltip_); });
    step([&] { bag.write_string(L"TEXT", face_.caption); });
    step([&] { bag.write_bool(L"ENABLED", face_.enabled); });
    step([&] { bag.write_bool(L"BACKCOLORCUST", face_.back_custom); });
    step([&] { bag.write_font(L"FONT", face_.font.get()); });
    step([&] { bag.write_bool(L"FOCUSRECT", face_.focus_rect); });
    step([&] { bag.write_bool(L"SHOWPICTURE", face_.picture_visible); });
    step([&] { bag.write_color(L"BACKCOLOR", face_.back); });
    step([&] { bag.write_color(L"FORECOLOR", face_.fore); });
    step([&] { bag.write_picture(L"MouseIcon", face_.mouse_icon.get()); });
    step([&] { bag.write_int(L"MousePointer", face_.mouse_pointer); });
}

} // namespace tarn
