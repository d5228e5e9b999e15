// Reference counts, unloading, memory.
#include <array>
#include <cstdio>

#include <gtest/gtest.h>

#include "server.h"
// clang-format off
#include <psapi.h>
// clang-format on

namespace orv::test {
namespace {

/// The DLL loaded by hand, as the system's loader of classes would.
class LoadedDll {
 public:
  LoadedDll() : module_(LoadLibraryW(DllName().c_str())) {
    if (module_ == nullptr) throw std::runtime_error("the DLL could not be loaded");
  }
  ~LoadedDll() { FreeLibrary(module_); }
  LoadedDll(const LoadedDll&) = delete;
  LoadedDll& operator=(const LoadedDll&) = delete;

  HRESULT GetClassObject(REFCLSID classId, REFIID id, void** object) const {
    return Function<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(
        classId, id, object);
  }
  HRESULT CanUnload() const { return Function<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")(); }

 private:
  template <typename Type>
  Type Function(const char* name) const {
    return reinterpret_cast<Type>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  HMODULE module_;
};

bool IsLoaded() { return GetModuleHandleW(L"orvengine.dll") != nullptr; }

void MakeFile(IEngine* engine, Text& path) {
  Text title(L"t");
  short one = 1;
  short first = 1;
  long records = 10;
  long row = 1;
  engine->CmdNewOrvDB(&path, &title);
  engine->CmdAddFld(&path, &one, &first);
  engine->CmdAddRecord(&path, &records, &row);
  ASSERT_EQ(ErrorCodeOf(engine), 0);
}

TEST(LifetimeTest, ObjectsAndLocksKeepTheDllLoaded) {
  const LoadedDll dll;
  EXPECT_EQ(dll.CanUnload(), S_OK);
  Reference<IClassFactory> factory;
  ASSERT_EQ(dll.GetClassObject(CLSID_Engine, IID_IClassFactory, factory.outVoid()), S_OK);
  EXPECT_EQ(dll.CanUnload(), S_FALSE);
  Reference<IEngine> engine;
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_IEngine, engine.outVoid()), S_OK);
  factory->LockServer(TRUE);
  factory.Reset();
  EXPECT_EQ(dll.CanUnload(), S_FALSE);
  engine.Reset();
  EXPECT_EQ(dll.CanUnload(), S_FALSE) << "still locked";
  ASSERT_EQ(dll.GetClassObject(CLSID_Engine, IID_IClassFactory, factory.outVoid()), S_OK);
  factory->LockServer(FALSE);
  factory.Reset();
  EXPECT_EQ(dll.CanUnload(), S_OK);
}

TEST(LifetimeTest, ReferencesAreCountedAcrossInterfaces) {
  const LoadedDll dll;
  Reference<IClassFactory> factory;
  ASSERT_EQ(dll.GetClassObject(CLSID_Engine, IID_IClassFactory, factory.outVoid()), S_OK);
  IEngine* engine = nullptr;
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_IEngine, reinterpret_cast<void**>(&engine)), S_OK);
  EXPECT_EQ(engine->AddRef(), 2U);
  IUnknown* unknown = nullptr;
  IDispatch* dispatch = nullptr;
  ASSERT_EQ(engine->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&unknown)), S_OK);
  ASSERT_EQ(unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch)), S_OK);
  void* other = &other;
  EXPECT_EQ(engine->QueryInterface(IID_IStream, &other), E_NOINTERFACE);
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(dispatch->Release(), 3U);
  EXPECT_EQ(unknown->Release(), 2U);
  EXPECT_EQ(engine->Release(), 1U);
  EXPECT_EQ(engine->Release(), 0U);
}

TEST(LifetimeTest, OtherClassesAndAggregationAreRefused) {
  const LoadedDll dll;
  Reference<IClassFactory> factory;
  EXPECT_EQ(dll.GetClassObject(IID_IEngine, IID_IClassFactory, factory.outVoid()),
            CLASS_E_CLASSNOTAVAILABLE);
  ASSERT_EQ(dll.GetClassObject(CLSID_Engine, IID_IClassFactory, factory.outVoid()), S_OK);
  void* object = nullptr;
  EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
}

TEST(LifetimeTest, UnloadingClosesTheFilesAndTheDllCanComeBack) {
  const TempFolder folder;
  const std::wstring name = folder.Name(L"t.orv");
  std::size_t length = 0;
  for (int round = 0; round < 10; ++round) {
    ASSERT_FALSE(IsLoaded());
    {
      const LoadedDll dll;
      Reference<IClassFactory> factory;
      Reference<IEngine> engine;
      ASSERT_EQ(dll.GetClassObject(CLSID_Engine, IID_IClassFactory, factory.outVoid()), S_OK);
      ASSERT_EQ(factory->CreateInstance(nullptr, IID_IEngine, engine.outVoid()), S_OK);
      Text path(Quoted(name));
      MakeFile(engine.get(), path);
    }
    ASSERT_FALSE(IsLoaded());
    const std::size_t now = ReadBytes(name).size();
    EXPECT_LT(now, 2000U) << "a closed file is cut to its true length";
    EXPECT_TRUE(round == 0 || now == length) << now << " after " << length;
    length = now;
    ASSERT_TRUE(DeleteFileW(name.c_str())) << "nobody has the file open any more";
  }
}

TEST(LifetimeTest, TheSystemUnloadsTheDllAfterTheLastRelease) {
  const Apartment apartment;
  {
    Reference<IEngine> engine;
    CreateByName(L"Orv.Engine", IID_IEngine, engine.outVoid());
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_TRUE(IsLoaded()) << "in use";
  }
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_FALSE(IsLoaded());
}

SIZE_T PrivateBytes() {
  PROCESS_MEMORY_COUNTERS counters = {};
  counters.cb = sizeof counters;
  K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage;
}

void CreateCallRelease(Text& path) {
  Reference<IDispatch> engine;
  CreateByName(L"Orv.Engine", IID_IDispatch, engine.outVoid());
  com::Variant isMatrix;
  std::array<VARIANT, 4> arguments{};
  arguments[0].vt = VT_BYREF | VT_VARIANT;
  arguments[0].pvarVal = isMatrix.get();
  arguments[1].vt = VT_I2;
  arguments[1].iVal = 1;
  arguments[2].vt = VT_I4;
  arguments[2].lVal = 1;
  arguments[3].vt = VT_BSTR;
  arguments[3].bstrVal = path.get();
  DISPPARAMS parameters = {arguments.data(), nullptr, 4, 0};
  com::Variant result;
  constexpr DISPID kGetCellValue = 14;
  ASSERT_EQ(engine->Invoke(kGetCellValue, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters,
                           result.get(), nullptr, nullptr),
            S_OK);
  ASSERT_EQ(result->vt, VT_BSTR);
}

TEST(LifetimeTest, TenThousandRoundsLeaveMemoryFlat) {
  constexpr int kWarmUp = 1000;
  constexpr int kRounds = 10000;
  constexpr SIZE_T kAllowed = 256 * 1024;  // 26 bytes a round would show
  const Apartment apartment;
  const TempFolder folder;
  Text path(Quoted(folder.Name(L"t.orv")));
  {
    Reference<IEngine> engine;
    CreateByName(L"Orv.Engine", IID_IEngine, engine.outVoid());
    MakeFile(engine.get(), path);
  }
  for (int i = 0; i < kWarmUp; ++i) CreateCallRelease(path);
  const SIZE_T before = PrivateBytes();
  ASSERT_GT(before, 0U);
  for (int i = 0; i < kRounds; ++i) CreateCallRelease(path);
  const SIZE_T after = PrivateBytes();
  EXPECT_LE(after, before + kAllowed);
  RecordProperty("bytesGrown", static_cast<int>(after - before));
  std::printf("private bytes before %zu, after %zu\n", static_cast<std::size_t>(before),
              static_cast<std::size_t>(after));
  CoFreeUnusedLibrariesEx(0, 0);
}

}  // namespace
}  // namespace orv::test
