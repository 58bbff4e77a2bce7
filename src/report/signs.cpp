#include "report/signs.h"

namespace zelvo::report {

// 64 x 30; class a: arrows with a head, class e: the piece of girder.
Html sign_picture(Sign sign) {
  Html out = html("<svg class=\"signs\" viewBox=\"0 0 64 30\" aria-hidden=\"true\">");
  switch (sign) {
    case Sign::UP:
      put(out,
          "<path class=\"e\" d=\"M12 17h40v6h-40z\"/>"
          "<path class=\"a\" d=\"M32 15V4m-3 4 3-4 3 4\"/>");
      break;
    case Sign::HIGHER:  // girder 1 above girder 2
      put(out,
          "<path class=\"e\" d=\"M8 8h18l-3 10H11zM38 14h18l-3 10H41z\"/>"
          "<path class=\"a\" d=\"M32 21V6m-3 4 3-4 3 4\"/>");
      break;
    case Sign::TWIST:  // the right side goes down
      put(out,
          "<path class=\"e\" d=\"M20 6l26 6-7 12-16-4z\"/>"
          "<path class=\"a\" d=\"M10 16A22 16 0 0 1 54 16m-4-3 4 3 1-5\"/>");
      break;
    case Sign::SHEAR:  // up at the right face
      put(out,
          "<path class=\"e\" d=\"M20 8h24v14H20z\"/>"
          "<path class=\"a\" d=\"M50 24V6m-3 4 3-4 3 4M14 6v18m-3-4 3 4 3-4\"/>");
      break;
    case Sign::SAGGING:
      put(out,
          "<path class=\"e\" d=\"M16 9q16 9 32 0v8q-16 9-32 0z\"/>"
          "<path class=\"a\" d=\"M53 22q8-8 0-16m-1 5 1-5 4 3M11 22q-8-8 0-16m1 5-1-5-4 3\"/>");
      break;
    case Sign::TORQUE:  // seen along the girder
      put(out,
          "<path class=\"e\" d=\"M20 9h24l-3 13H23z\"/>"
          "<path class=\"a\" d=\"M10 20A22 16 0 0 1 54 14m-4-3 4 4 2-5\"/>");
      break;
    case Sign::TENSION:
      put(out,
          "<path class=\"e\" d=\"M18 10h28v10H18z\"/>"
          "<path class=\"a\" d=\"M48 15h13m-4-3 4 3-4 3M16 15H3m4-3-4 3 4 3\"/>");
      break;
    case Sign::RIGHT_TIP:  // seen from above, to the right is down
      put(out,
          "<path class=\"e\" d=\"M18 10h28v10H18z\"/>"
          "<path class=\"a\" d=\"M48 20h13m-4-3 4 3-4 3M16 20H3m4-3-4 3 4 3"
          "M61 10H48m4-3-4 3 4 3M3 10h13m-4-3 4 3-4 3\"/>");
      break;
  }
  put(out, "</svg>");
  return out;
}

}  // namespace zelvo::report
