#include "messages/messages.h"

#include <algorithm>
#include <array>

namespace messages {
namespace {

struct Message {
    std::int32_t number;
    std::wstring_view german;
    std::wstring_view english;
};

/// By number. Several texts are fragments that frame a name or a path; their blanks belong to them.
constexpr std::array table{
    Message{1601, L"Bitte geben Sie den Pfad für die |1-Quelldateien an.",
               L"Please specify the path for the |1-source files."},
    Message{1701, L"Bitte geben Sie ein Zielverzeichnis ein oder wählen Sie eins aus.",
               L"Please specify the destination directory or select one."},
    Message{1801, L"Das Zielverzeichnis:",
               L"The destination directory"},
    Message{1901, L"existiert nicht. Soll dieses Verzeichnis erstellt werden?",
               L"doesn't exist. Should this directory be created?"},
    Message{2001, L"Verzeichnis wechseln",
               L"Change directory"},
    Message{2011, L"Installieren von",
               L"Installing of"},
    Message{2021, L"Das Verzeichnis existiert nicht!",
               L"The directory doesn't exist."},
    Message{2031, L"Das angegebene Verzeichnis:",
               L"The specified directory:"},
    Message{2041, L"ist ungültig, unvollständig oder schreibgeschützt. Bitte geben Sie einen vollständigen Pfad mit Laufwerkbuchstaben an, zum Beispiel 'C:\\\\Anwendungen'.",
               L"is invalid, incomplete or write protected. Please specify a complete path with drive letter, e.g. 'C:\\\\Applications'."},
    Message{2051, L"Netzwerkpfad '|1' kann nicht gelesen werden",
               L"Network path '|1' can not be read"},
    Message{2061, L"Kein Lesen möglich von Laufwerk ",
               L"No reading possible from drive "},
    Message{2071, L"Bitte stellen Sie sicher, daß der Pfad richtig ist und daß Sie die nötigen Zugriffsrechte haben.",
               L"Please check validity of the specified path and ensure that you own the necessary access rights."},
    Message{2081, L"Stellen Sie sicher, daß die Diskettenöffnung geschlossen ist, daß die Diskette formatiert ist und daß sie nicht beschädigt ist.",
               L"Please ensure that the diskdrive is closed and the disk is formatted and not damaged."},
    Message{10001, L"Fehler",
               L"Error"},
    Message{10002, L"Fehler ",
               L"Error "},
    Message{10003, L". Bitte informieren Sie den Hersteller!",
               L". Please contact the manufacturer!"},
    Message{10004, L"Datentyp wird nicht unterstützt!",
               L"The datatype is not supported!"},
    Message{10005, L"Überlauf",
               L"Overflow"},
    Message{10006, L"Die Datei |a|1|a konnte nicht gefunden werden!",
               L"The file |a|1|a could not be found!"},
    Message{10007, L"Der Ordner |a|1|a konnte nicht gefunden werden!",
               L"The folder |a|1|a could not be found!"},
    Message{10008, L" ist keine Datei.",
               L" is not a file."},
    Message{10009, L"Die Datei ",
               L"The file "},
    Message{10010, L" ist schreibgeschützt.",
               L" is write protected."},
    Message{10011, L"Bitte geben Sie einen numerischen Wert ein!",
               L"Please insert a numerical value!"},
    Message{10012, L"Eigenschaft wird nicht unterstützt!",
               L"Property is not supported"},
    Message{10013, L"Der Datentyp der Variable |aV|a wird nicht unterstützt.",
               L"The datatype of the variable |aV|a is not supported."},
    Message{10014, L"|aV|a ist kein Array!",
               L"|aV|a isn't an array!"},
    Message{10015, L"|n|nHinweis: Ändern Sie den Datentyp in |aVariant/x|a wobei für |ax|a die Datentypen |aByte|a, |aInteger|a, |aLong|a, |aSingle|a und |aDouble|a verwendet werden können!",
               L"|n|nInformation: Change the Datatype to |aVariant/x|a, with |aByte|a, |aInteger|a, |aLong|a, |aSingle|a or |aDouble|a as datatype for |ax|a."},
};
static_assert(std::ranges::is_sorted(table, {}, &Message::number));

} // namespace

std::wstring_view text(std::int32_t number, Language language) noexcept
{
    const auto found = std::ranges::lower_bound(table, number, {}, &Message::number);
    if (found == table.end() || found->number != number)
        return {};
    return language == Language::German ? found->german : found->english;
}

} // namespace messages
