// Start-up of the board library: registration of its parameters with the
// platform's parameter manager. It runs by itself when the library is loaded;
// the declaration is here for tests.
#ifndef BOARDLIB_HBOLIBINIT_H
#define BOARDLIB_HBOLIBINIT_H

/// Registers the board parameters (a repeated call keeps values already set)
/// and applies the settings of the environment variable BOARDLIB_PARAMS.
void init_lib();

#endif
