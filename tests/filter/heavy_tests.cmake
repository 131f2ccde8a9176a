# Read by CTest after the discovered tests of this folder are defined.
set(heavy_tests
  RecordCrash.AKillAtAnyMomentLeavesTheStateBeforeOrAfter
  ParamStatements.EveryBoxOverJoinedReasonsMatchesTheStatements
  ParamStatements.ATableCutIntoSlicesMatchesTheStatements
  SuperStatements.ATableCutIntoSlicesMatchesTheStatements
  filter.ParallelRuns.IntegratedFilter
  filter.ParallelRuns.EveryParameterInEveryScope)
foreach(t ${heavy_tests})
  if(TEST ${t})
    set_tests_properties(${t} PROPERTIES LABELS heavy TIMEOUT 3600)
  endif()
endforeach()
