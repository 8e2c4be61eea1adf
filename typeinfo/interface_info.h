// What the property grid knows of one interface of a control, member by member: kind, named
// values, property page, category and, for a method, one description per parameter. Built
// once from the host's CVXInterfaceInfo and the live control's IDispatch; the host reads the
// public members.
#pragma once

#include "host/ole/interface_info.h"
#include "typeinfo/member_types.h"

class CTalvorMethodInfo {
public:
    CTalvorMethodInfo() = default;
    // Copies the kind and the lists (variants bit for bit).
    CTalvorMethodInfo(VPPropTypes& type, CStringArray& names,
                      CArray<tagVARIANT, tagVARIANT>& values);
    ~CTalvorMethodInfo();
    CTalvorMethodInfo(const CTalvorMethodInfo&) = delete;
    CTalvorMethodInfo& operator=(const CTalvorMethodInfo&) = delete;

    long GetID() { return m_lID; }

    // Fills the description of member `id` of the control of class `clsid` (the form's
    // interface identifier stands for the form). Gives 0 in all cases.
    long InitEx(IDispatch* dispatch, GUID& clsid, long id);

    // As the free functions of almost the same name, with the result in this object.
    void InitGetPropTypeInfo(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc);
    void InitGetPropTypeInfoEx(IDispatch* dispatch, long dispId);
    // Also keeps the flags of the last member met with this id in m_wFlags, and describes the
    // parameters of a method with this id in m_arrParams.
    void InitGetItemPropTypeInfo(IDispatch* dispatch, ITypeInfo* typeInfo, long dispId);
    int InitGetActiveXTypeInfo(GUID clsid, int event, ITypeInfo** typeInfo);
    int InitGetPropCat(IDispatch* dispatch, long dispId);
    long InitGetPropPageCLSID(IDispatch* dispatch, long dispId, GUID* page);
    int InitCheckInterface(IUnknown* unknown, const GUID& iid);

    long m_lID = 0;
    ITypeInfo* m_pTypeInfo = nullptr; // not released by this object
    int m_nPropCat = -2;
    GUID m_clsidPropPage = GUID_NULL;
    GUID m_clsidAlternate = GUID_NULL;
    int m_nAlternate = -1;
    GUID m_clsidControl = GUID_NULL;
    VPPropTypes m_nPropType = VP_PROP_NONE;
    CStringArray m_arrNames;
    CArray<tagVARIANT, tagVARIANT> m_arrValues;
    WORD m_wFlags = 0;
    CArray<CTalvorMethodInfo*, CTalvorMethodInfo*> m_arrParams; // owned
};

class CTalvorInterfaceInfo {
public:
    CTalvorInterfaceInfo() = default;
    ~CTalvorInterfaceInfo();
    CTalvorInterfaceInfo(const CTalvorInterfaceInfo&) = delete;
    CTalvorInterfaceInfo& operator=(const CTalvorInterfaceInfo&) = delete;

    // Builds one description per member of `source`: 0, or E_OUTOFMEMORY when a member
    // object can't be made (later elements stay null).
    long InitEx(CVXInterfaceInfo* source, IDispatch* dispatch, GUID& clsid);
    GUID GetIID() { return m_iid; }
    int GetNumMethods() { return static_cast<int>(m_arrMethods.GetSize()); }
    // The first description with this id, or null.
    CTalvorMethodInfo* FindMethod(long id);

    CArray<CTalvorMethodInfo*, CTalvorMethodInfo*> m_arrMethods; // owned
    GUID m_iid = GUID_NULL;
};
