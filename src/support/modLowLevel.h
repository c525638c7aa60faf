#pragma once
// Where the component and its user's data live.

#include <string>

namespace qvrl {

// Folder of the component's data files, without a closing "/":
// $QVRL_PROGRAM_FOLDER, else the data folder installed beside the library,
// else the build tree's data folder.
std::string ProgramFolder();
// The component's name as its files carry it ("QVRoofLoad").
std::string ProgramName();
// Per-user folder with a closing "/": $APPDATA/tarvek/ when APPDATA is set
// and not blank, else ${XDG_DATA_HOME:-~/.local/share}/tarvek/. Created when
// missing; a failure to create it is left to the later writes.
std::string UserDataFolder();
std::string GetAppData();
// The all-users settings folder: $QVRL_ALLUSERS_FOLDER, else /etc/xdg/tarvek.
std::string AllUsersFolder();
// The user's profile folder: $HOME, else the password database's entry.
std::string UserProfileFolder();
// Trims the right end, cuts at the first NUL, trims the right end again.
std::string CutAtNul(const std::string& s);

}  // namespace qvrl
