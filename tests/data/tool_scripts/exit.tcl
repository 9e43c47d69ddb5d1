puts [get_param board.enableSchemaV2]
exit 3
