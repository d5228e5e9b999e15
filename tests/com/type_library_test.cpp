// The type library in the DLL against the engine's own member table.
#include <gtest/gtest.h>

#include "engine/members.h"
#include "server.h"

namespace orv::test {
namespace {

using engine::Member;
using engine::ParameterType;
using engine::ResultType;

VARTYPE TypeOf(ParameterType type) {
  switch (type) {
    case ParameterType::kText:
      return VT_BSTR;
    case ParameterType::kInt16:
      return VT_I2;
    case ParameterType::kInt32:
      return VT_I4;
    case ParameterType::kBoolean:
      return VT_BOOL;
    case ParameterType::kTextMatrix:
      return VT_SAFEARRAY;
  }
  return VT_ILLEGAL;
}

VARTYPE TypeOf(ResultType type) {
  switch (type) {
    case ResultType::kNone:
      return VT_VOID;
    case ResultType::kText:
      return VT_BSTR;
    case ResultType::kInt16:
      return VT_I2;
    case ResultType::kInt32:
      return VT_I4;
    case ResultType::kValue:
      return VT_VARIANT;
  }
  return VT_ILLEGAL;
}

class TypeLibraryTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadTypeLibEx(DllName().c_str(), REGKIND_NONE, library_.out()), S_OK);
    ASSERT_EQ(library_->GetTypeInfoOfGuid(IID_IEngine, members_.out()), S_OK);
  }

  std::wstring NameOf(const FUNCDESC& function, UINT position) const {
    BSTR names[1 + engine::kMaxParameters] = {};
    UINT count = 0;
    members_->GetNames(function.memid, names, 1 + engine::kMaxParameters, &count);
    const std::wstring name(com::TextOf(position < count ? names[position] : nullptr));
    for (BSTR each : names) SysFreeString(each);
    return name;
  }

  void ExpectSame(const FUNCDESC& function, const Member& member) const {
    EXPECT_EQ(function.memid, member.number());
    EXPECT_EQ(NameOf(function, 0), Wide(member.name()));
    EXPECT_EQ(function.invkind, INVOKE_FUNC);
    EXPECT_EQ(function.elemdescFunc.tdesc.vt, TypeOf(member.result()));
    ASSERT_EQ(static_cast<std::size_t>(function.cParams), member.parameters().size());
    for (UINT i = 0; i < member.parameters().size(); ++i) {
      SCOPED_TRACE(member.parameters()[i].name);
      EXPECT_EQ(NameOf(function, i + 1), Wide(member.parameters()[i].name));
      const ELEMDESC& parameter = function.lprgelemdescParam[i];
      EXPECT_EQ(parameter.paramdesc.wParamFlags & (PARAMFLAG_FIN | PARAMFLAG_FOUT),
                PARAMFLAG_FIN | PARAMFLAG_FOUT);
      ASSERT_EQ(parameter.tdesc.vt, VT_PTR) << "every parameter is passed by reference";
      EXPECT_EQ(parameter.tdesc.lptdesc->vt, TypeOf(member.parameters()[i].type));
    }
  }

  static std::wstring Wide(std::string_view latin) { return {latin.begin(), latin.end()}; }

  Apartment apartment_;
  Reference<ITypeLib> library_;
  Reference<ITypeInfo> members_;
};

TEST_F(TypeLibraryTest, ListsAllMembersInTheOrderOfTheMemberTable) {
  TYPEATTR* about = nullptr;
  ASSERT_EQ(members_->GetTypeAttr(&about), S_OK);
  EXPECT_EQ(about->typekind, TKIND_DISPATCH);
  EXPECT_NE(about->wTypeFlags & TYPEFLAG_FDUAL, 0);
  // A dual interface seen as a dispatch interface lists the seven methods of its bases first.
  constexpr UINT kInherited = 7;
  ASSERT_EQ(about->cFuncs, engine::Members().size() + kInherited);
  for (const Member& member : engine::Members()) {
    SCOPED_TRACE(member.name());
    FUNCDESC* function = nullptr;
    ASSERT_EQ(members_->GetFuncDesc(kInherited + static_cast<UINT>(member.number()) - 1, &function),
              S_OK);
    ExpectSame(*function, member);
    members_->ReleaseFuncDesc(function);
  }
  members_->ReleaseTypeAttr(about);
}

TEST_F(TypeLibraryTest, TheVtableHasTheMembersInTheSameOrder) {
  HREFTYPE reference = 0;
  ASSERT_EQ(members_->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
  Reference<ITypeInfo> dual;
  ASSERT_EQ(members_->GetRefTypeInfo(reference, dual.out()), S_OK);
  constexpr int kBaseMethods = 7;
  for (const Member& member : engine::Members()) {
    SCOPED_TRACE(member.name());
    FUNCDESC* function = nullptr;
    ASSERT_EQ(dual->GetFuncDesc(static_cast<UINT>(member.number()) - 1, &function), S_OK);
    EXPECT_EQ(function->memid, member.number());
    EXPECT_EQ(function->oVft,
              (kBaseMethods + member.number() - 1) * static_cast<int>(sizeof(void*)));
    dual->ReleaseFuncDesc(function);
  }
}

TEST_F(TypeLibraryTest, TheObjectHandsOutTheSameInformation) {
  Reference<IDispatch> object;
  CreateByName(L"Orv.Engine", IID_IDispatch, object.outVoid());
  UINT count = 0;
  ASSERT_EQ(object->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1U);
  Reference<ITypeInfo> info;
  ASSERT_EQ(object->GetTypeInfo(0, LOCALE_NEUTRAL, info.out()), S_OK);
  TYPEATTR* about = nullptr;
  ASSERT_EQ(info->GetTypeAttr(&about), S_OK);
  EXPECT_TRUE(about->guid == IID_IEngine);
  info->ReleaseTypeAttr(about);
  EXPECT_EQ(object->GetTypeInfo(1, LOCALE_NEUTRAL, info.out()), DISP_E_BADINDEX);
}

TEST_F(TypeLibraryTest, TheRegisteredLibraryIsTheOneInTheDll) {
  BSTR path = nullptr;
  ASSERT_EQ(QueryPathOfRegTypeLib(LIBID_Orv, 1, 0, LOCALE_NEUTRAL, &path), S_OK);
  const std::filesystem::path registered{std::wstring(com::TextOf(path))};
  SysFreeString(path);
  EXPECT_TRUE(std::filesystem::equivalent(registered, DllName())) << registered;
}

}  // namespace
}  // namespace orv::test
