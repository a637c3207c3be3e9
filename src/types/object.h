// CObject: what everything that is destroyed through a base pointer has in common.
#pragma once

class CObject {
 public:
  CObject() = default;
  CObject(const CObject&) = default;
  CObject& operator=(const CObject&) = default;
  virtual ~CObject() = default;
};
