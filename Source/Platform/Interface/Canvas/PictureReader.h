// Pictures out of files. No state; any thread.
#pragma once

#include <memory>
#include <string>

class BBitmap;

// Null when there is none, or one that is larger than any screen.
[[nodiscard]] std::shared_ptr<const BBitmap> ReadPicture(const std::string& path);
