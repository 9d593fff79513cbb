#include "server/delayed_import.inc"

        import  no-such-library, InMissingLibrary, 8
        import  shlwapi, MissingInLibrary, 4
        import  planted-library, InPlantedLibrary, 0
