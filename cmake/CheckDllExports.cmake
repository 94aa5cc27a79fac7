# Checks a Windows build of varion.dll with the toolchain's objdump:
#   cmake -DDLL=build-win32/varion.dll -DOBJDUMP=i686-w64-mingw32-objdump -P cmake/CheckDllExports.cmake
# The export table must hold CVarion's members (a sample from every family)
# and the diagnostic-sink function, and must not hold any Automation service:
# those the DLL imports from the system's oleaut32.
cmake_minimum_required(VERSION 3.20)
if(NOT DLL OR NOT OBJDUMP)
  message(FATAL_ERROR "usage: cmake -DDLL=<varion.dll> -DOBJDUMP=<objdump> -P CheckDllExports.cmake")
endif()
execute_process(COMMAND ${OBJDUMP} -p ${DLL} OUTPUT_VARIABLE dump RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${OBJDUMP} could not read ${DLL}")
endif()

# The exported names: the lines of the name pointer table.
string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table[^\n]*\n([^\n]+\n)+" table "${dump}")
string(REPLACE "\n" ";" lines "${table}")
set(names)
foreach(line IN LISTS lines)
  if(line MATCHES "^[ \t]*\\[ *[0-9]+\\] ([A-Za-z_][A-Za-z0-9_@]*)$")
    list(APPEND names ${CMAKE_MATCH_1})
  endif()
endforeach()

set(required
  VarionSetDiagnosticSink
  _ZN7CVarionC1Ev                                  # CVarion()
  _ZN7CVarionC1EPKw                                # CVarion(const OLECHAR*)
  _ZN7CVarion5ClearEv
  _ZN7CVarion7SetTypeEt
  _ZN7CVarion10ChangeTypeEtPS_
  _ZNK7CVarioncvlEv                                # operator long()
  _ZNK7CVarioncvdEv                                # operator double()
  _ZN7CVarion7SetDataE10tagVARIANT
  _ZNK7CVarion7GetDataER10tagVARIANT
  _ZNK7CVarion12CONCAT_ARRAYERKS_
  _ZNK7CVarion15Value2HexStreamER7CString
  _ZNK7CVarioneqERKS_                              # operator==
  _ZN7CVarion3ADDERS_RKS_S2_                       # static ADD
  _ZNK7CVarion7GetYearEv
  _ZNK7CVarion24GetISO8601DateTimeStringEb
  _ZNK7CVarion26GetStringWithDisplayFormatE7CStrings
  _ZNK7CVarion11UnitConvertEssPS_
  _ZNK7CVarion6GetLenEv)
set(missing)
foreach(name IN LISTS required)
  if(NOT name IN_LIST names)
    list(APPEND missing ${name})
  endif()
endforeach()

set(members ${names})
list(FILTER members INCLUDE REGEX "7CVarion")
list(LENGTH members memberCount)

set(services ${names})
list(FILTER services INCLUDE REGEX "^(Sys(Alloc|Free|String)|Variant(Init|Clear|Copy|Change|Time)|SafeArray|Var(Bstr|Date|Udate)|SystemTimeTo)")

if(NOT dump MATCHES "DLL Name: (OLEAUT32|oleaut32)\\.dll")
  list(APPEND problems "does not import oleaut32.dll")
endif()
if(missing)
  list(APPEND problems "does not export: ${missing}")
endif()
if(services)
  list(APPEND problems "exports Automation services of its own: ${services}")
endif()
if(problems)
  message(FATAL_ERROR "${DLL}: ${problems}")
endif()
message(STATUS "${DLL}: ${memberCount} CVarion exports, VarionSetDiagnosticSink, oleaut32 imported")
