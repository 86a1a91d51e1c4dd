#include "platform/FileAssociation.h"

#include <array>
#include <string>
#include <utility>

#include "platform/Failure.h"
#include "platform/windows/RegistryKey.h"
#include "platform/windows/System.h"

namespace {

// Writes a key's default value for everybody, or, where that is refused, for this user.
void WriteDefault(const std::wstring& key, const std::wstring& text) {
  if (Windows::RegistryKey::Make(HKEY_CLASSES_ROOT, key).Write(L"", text)) return;
  const std::wstring ofUser = L"Software\\Classes\\" + key;
  static_cast<void>(Windows::RegistryKey::Make(HKEY_CURRENT_USER, ofUser).Write(L"", text));
}

}  // namespace

namespace FileAssociation {

void Register(const FileSystem& /*files*/, const Description& description) {
  const std::string& type = description.typeName;
  const std::string& program = description.program;
  const std::array<std::pair<std::string, std::string>, 4> values = {
      {{description.extension, type},
       {type, description.text},
       {type + "\\DefaultIcon", program + ",0"},
       {type + R"(\shell\open\command)", Concat('"', program, R"(" "%1")")}}};
  for (const auto& [key, text] : values)
    WriteDefault(Windows::ToWide(key), Windows::FromAlias(text));
}

}  // namespace FileAssociation
