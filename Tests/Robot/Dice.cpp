#include "Tests/Robot/Dice.h"

#include <cstdio>

std::string Dice::PlainNumber() {
    char text[40];
    std::snprintf(text, sizeof text, "%.*g", Number(1, 9), Real(-9.0, 9.0));
    return text;
}

std::string Dice::Text() {
    static const std::vector<std::string> kUnits{"km", "AU",    "m",   "kg", "Me", "solar masses",
                                                 "dy", "years", "mph", "s",  "cm", "furlongs"};
    static const std::vector<std::string> kWords{
        "",    " ",     "0",          "-0",     "1e308",   "1e309",   "-1e-320",        "nan",
        "inf", "1e-11", "0x1p3",      "1,5",    "--1",     "1e",      "Caladan",        "Ångström",
        "שמש", "名前",  "a\"b'c<i>&", "%1 %2%", "../../x", "[*] [*]", "1 2 3 4 5 6 7 8"};
    switch (Number(0, 9)) {
        case 0:
        case 1:
        case 2:
            return PlainNumber() + ' ' + Any(kUnits);
        case 3:
            return PlainNumber() + 'e' + std::to_string(Number(-12, 12));
        case 4:
            return Any(kWords);
        case 5:
            return std::string(static_cast<std::size_t>(Number(100, 400)), 'x');
        default:
            return PlainNumber();
    }
}
