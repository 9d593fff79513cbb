#pragma once

#include <qvObjects.h>

#include <string>
#include <string_view>

/// The members of qvAPI that make GUIDs and turn them into text and back.
class qvAPI_identifiers {
public:
    unsigned char HexToByte(std::wstring_view sStr);
    std::wstring CreateGUID(bool fKlammer);
    std::wstring StringFromGUID(const tGUID& Guid, bool fKlammer);
    void GUIDFromString(std::wstring_view Str, tGUID& Guid);
};
