// A demo data root of the three sibling products, written with the planning
// library's own writers: the README's run command, the screenshots and the
// tests use it. Qt-free. Contents and the import results they give are listed
// in docs/demo-data.md.
#pragma once

#include <string>

namespace tessary {

// The configured client-file key that opens the demo's protected client file.
constexpr const char* kDemoClientKey = "tessary-demo";

// Writes root/<Product>/Data/<client folders> and root/<Product>/Core/ for
// Meridel, Basalto and Quorren. Creates root when missing; throws
// kv::EKvError, before writing anything, when root is empty text or exists
// and is not an empty folder. The protected client file is enciphered with
// kDemoClientKey, held in the writer's own library settings.
void WriteDemoData(const std::string& root);

} // namespace tessary
