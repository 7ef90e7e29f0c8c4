#include "cli/Command.h"

#include <array>

namespace tonequill::cli {

std::span<const Command> commands()
{
    static constexpr std::array kCommands{
        Command{"add", "FILE…", "Add the best part of sounds and videos to the library.", add},
        Command{"list", "", "List the library, newest first.", list},
        Command{"search", "WORD…", "Find sounds of the library, in any language.", search},
        Command{"find", "WORD…", "Find free sounds in the offline catalogue, in any language.", find},
        Command{"show", "SOUND", "Tell everything about one sound.", show},
        Command{"delete", "SOUND…", "Remove sounds from the library, for good.", deleteSounds},
        Command{"credits", "[SOUND…]", "Print the credit lines of sounds, ready to paste.", credits},
        Command{"name", "SOUND…", "Give sounds smart names and tags by what is heard in them.", name},
        Command{"analyze", "FILE", "Analyse a file without taking it in.", analyze},
        Command{"peaks", "FILE", "Print the waveform of a file.", peaks},
        Command{"listen", "FILE", "Tell what a recording sounds like.", listen},
        Command{"parts", "FILE", "Find the best parts of a recording.", parts},
        Command{"export", "FILE OUTPUT", "Write a range as a finished file.", exportPart},
        Command{"render", "FILE OUTPUT", "Write a range with effects.", render},
        Command{"save", "SOUND…", "Write sounds as finished files to a folder.", save},
        Command{"fcpxml", "SOUND…", "Write sounds and an FCPXML event that lists them.", fcpxml},
        Command{"sync", "", "Bring the Auto Folder up to date.", sync},
        Command{"mix", "OUTPUT PIECE…", "Sum files on one timeline.", mix},
    };
    return kCommands;
}

} // namespace tonequill::cli
