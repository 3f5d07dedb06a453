#include <KXWAN/foundation/CString.h>

namespace {

template <typename Char>
unsigned int Hash(const Char* key) {
  uint32_t hash = 0;
  for (; *key != 0; ++key) hash = hash * 33 + static_cast<uint32_t>(int32_t{*key});
  return hash;
}

}  // namespace

unsigned int HashKey(const char* key) { return Hash(reinterpret_cast<const signed char*>(key)); }

unsigned int HashKey(const short* key) { return Hash(key); }
