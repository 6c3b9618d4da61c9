// TypeName: the class name of an object's dynamic type without its namespace, as
// VB's TypeName gives it ("JobProcess" for a zintra::JobProcess). Used in log lines that
// name the kind of an object.
#pragma once

#include <string>
#include <typeinfo>

namespace zintra {

std::string TypeName(const std::type_info& type);

template <typename T>
std::string TypeName(const T& object) {
  return TypeName(typeid(object));
}

}  // namespace zintra
