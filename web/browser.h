// Opens the page in the user's browser.
#pragma once

#include <string>

namespace kobd::web
{
// A file of the user's own that sends the browser on to the address. The address itself, with its token, must not be a
// word of a command: every user of the machine can read those. Removed at the end.
class StartPage
{
public:
    // Opens it with xdg-open, and says so when that fails. Nothing for an empty address.
    explicit StartPage(const std::string& address);
    ~StartPage();
    StartPage(const StartPage&) = delete;
    StartPage& operator=(const StartPage&) = delete;

private:
    std::string path_ = {};
};
}  // namespace kobd::web
