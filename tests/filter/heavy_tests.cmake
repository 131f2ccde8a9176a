# Read by CTest after the discovered tests of this folder are defined; a name that is not
# among them is passed over.
set_tests_properties(
  RecordCrash.AKillAtAnyMomentLeavesTheStateBeforeOrAfter
  ParamStatements.EveryBoxOverJoinedReasonsMatchesTheStatements
  ParamStatements.ATableCutIntoSlicesMatchesTheStatements
  SuperStatements.ATableCutIntoSlicesMatchesTheStatements
  filter.ParallelRuns.IntegratedFilter
  filter.ParallelRuns.EveryParameterInEveryScope
  PROPERTIES LABELS heavy TIMEOUT 3600)
