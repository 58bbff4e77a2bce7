// Input files with one fault each.
#pragma once
#include "support/input_text.h"

namespace zelvo {

// The keyword gets other records, or none at all; note is part of what must be said of it.
struct FaultyInput {
  int girders;
  const char* keyword;
  const char* records;
  const char* note;

  std::string text() const {
    InputText input = girders == 2 ? two_girder_input() : one_girder_input();
    return (records == nullptr ? input.erase(keyword) : input.set(keyword, records)).text();
  }
};

inline const FaultyInput FAULTY_INPUTS[] = {
    {1, "ngird", nullptr, "ngird: the keyword is missing, must be given"},
    {1, "pour_seq", nullptr, "pour_seq: the keyword is missing"},
    {1, "ngird", "3", "2: ngird: no model has so many girders (3), must be 1 or 2"},
    {1, "ngird", "one",
     "2: ngird: number of girders cannot be converted (one), must be an integer"},
    {1, "ngird", "\xff\x01", "2: ngird: number of girders cannot be converted (\\xff\\x01)"},
    {1, "lgbr", "-240", "4: lgbr: length is negative (-240), must be 0 or more"},
    {1, "lgbr", "9999999999", "lgbr: length is out of range (9999999999), must be an integer of"},
    {1, "secdim", "60 72 84 12 144 NaN", "6: secdim: deck thickness is no finite number (NaN)"},
    {1, "secdim", "60 0 84 12 144 8", "6: secdim: bottom flange width is not positive (0)"},
    {1, "secdim", "60 72 84 12 144", "7: secdim: a keyword stands in the place of the deck thick"},
    {1, "rcurv", "-9600", "rcurv: radius is negative (-9600), must be 0 for a straight girder"},
    {1, "rcurv", "72", "rcurv: radius is too small (72), must be more than the half width"},
    {1, "secdim", "60 200 84 12 144 8\nrcurv\n99",
     "more than the half width of the structure, 100"},
    {1, "rcurv", "1e999", "rcurv: radius is out of range (1e999), must be a real of at most"},
    {2, "rcurv", "162", "rcurv: radius is too small (162)"},
    {1, "webthick", "2\n96 0,5\n144 .5", "9: webthick row 1: thickness is not positive (0)"},
    {1, "webthick", "2\n96 .5\n144", "11: webthick row 2: a keyword stands in the place of the th"},
    {1, "webthick", "2000000000\n240 .5", "10: webthick row 2: a keyword stands in the place"},
    {1, "webthick", "1\n96 .5",
     "7: webthick: segment lengths do not add up to the girder length "
     "(96 in multiples of 24), must be 240 as lgbr"},
    {1, "webthick", "2\n130 .5\n110 .5",
     "length (240 as typed, 216 in multiples of 24), must be 240 as lgbr"},
    {1, "botfthick", "-1", "botfthick: number of segments is too small (-1), must be 1 or more"},
    {1, "tfthick", "2\n264 1\n-25 1", "row 2: length is negative (-25, cut to -24), must be 0 or"},
    {1, "internal_brace", "1\n-12 1 5",
     "row 1: position is outside the girder (-12), must be 0 to"},
    {1, "internal_brace", "1\n12 1 -5",
     "internal_brace row 1: area is negative (-5), must be 0 or"},
    {1, "external_brace", "1\n72 1 5",
     "external_brace: one girder has no external braces (1 rows)"},
    {1, "top_lateral", "1\n3 0 72 5", "top_lateral row 1: type is none that exists (3), must be 1"},
    {1, "top_lateral", "1\n1 0 999 5",
     "row 1: second position is outside the girder (999, cut to 996)"},
    {1, "web_stiffener", "1\n0 -6 1", "web_stiffener row 1: width is negative (-6)"},
    {1, "support", "2\n0\n264",
     "support row 2: position is outside the girder (264), must be 0 to"},
    {1, "support", "-1", "support: number of supports is too small (-1), must be 0 or more"},
    {1, "studs", "2\n120 12 3\n96 12 3", "studs: segment lengths do not add up"},
    {1, "studs", "1\n240 -1 3", "studs row 1: spacing is negative (-1), must be 0 or more"},
    {1, "studs", "1\n240 1 -3", "number of studs across is negative (-3), must be 0 or more in"},
    {1, "pour_seq", "1\n0\n1", "pour_seq: number of segments is too small (0), must be 1 or more"},
    {1, "pour_seq", "2\n1\n240\n1 1 1\n1 -1 1\n0", "row 3: stud stiffness of analysis 2 segment 1"},
    {1, "pour_seq", "1\n1\n240\n-1 1 1\n0", "row 2: deck modulus of analysis 1 segment 1 is neg"},
    {1, "buckle", "T 1\n0", "buckle: number of modes is too small (0), must be 1 or more"},
    {1, "buckle", "1 1\n2", "buckle: buckling switch cannot be converted (1), must be a logical"},
    {2, "offset", "42", "offset: web tops of the two girders coincide (42)"},
    {2, "offset", "36", "offset: bottom flange corners of the two girders coincide (36)"},
    {2, "offset", "-90", "offset: offset is negative (-90), must be 0 or more"},
    // Negative, though the cut to the grid makes 0 of it.
    {1, "lgbr", "-5", "4: lgbr: length is negative (-5, cut to 0), must be 0 or more"},
    {1, "support", "2\n-23\n240", "row 1: position is outside the girder (-23, cut to 0), must be"},
    {1, "tfthick", "2\n240 1\n-23 1", "row 2: length is negative (-23, cut to 0), must be 0 or"},
    // Sizes that leave no numbers behind.
    {1, "secdim", "60 72 84 12 144 1e100", "deck thickness is beyond any bridge (1e+100), must be"},
    {1, "webthick", "1\n240 1e-100", "(1e-100), must be 1e-06 to 1e+06 in"},
    {1, "internal_brace", "1\n72 1 1e-100", "area is beyond any bridge (1e-100), must be"},
    {1, "rcurv", "1e16", "radius is beyond any bridge (1e+16), must be at most 1e+09 in, or 0"},
    {1, "studs", "1\n240 1e9 3", "spacing is beyond any bridge (1e+09), must be"},
    {1, "studs", "1\n240 12 2000000", "number of studs across is beyond any bridge (2e+06)"},
    {1, "pour_seq", "1\n1\n240\n1e99 1 1\n0", "segment 1 is beyond any bridge (1e+99), must be"},
    {1, "pour_seq", "1\n1\n240\n1 1e99 1\n0", "must be 1e-20 to 1e+12 kip/in, or 0"},
    {2, "offset", "1e99", "offset is beyond any bridge (1e+99), must be 1e-06 to 1e+06 in, or 0"},
    {1, "buckle", "T 1\n2\nsolver\n2 .1\n1e30", "solver: shift is beyond any load factor (1e+30)"},
};

}  // namespace zelvo
