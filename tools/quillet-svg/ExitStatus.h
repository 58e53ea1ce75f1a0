#pragma once

/// What the program tells scripts; of several, the highest.
enum ExitStatus {
    Clean = 0,       ///< nothing is lost; or, of compare, the pictures are the same
    Lossy = 1,       ///< something is drawn otherwise, and has been named
    NotAccepted = 2, ///< the reader refuses a file, or it cannot be converted; nothing was written for it
    NoAccess = 3,    ///< a file cannot be read or written, or memory does not suffice
    WrongArguments = 4,
};
