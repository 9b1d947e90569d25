// A user's click on a text that can be seen. Free of Qt, any thread.
#pragma once

#include <string>

void ClickLabel(const std::string& text);
