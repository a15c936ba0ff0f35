; Ta/rn Series C Compiler V3.70 Assembler Source
;
; Source file : src\parser.c

$DGS GLV_SYM, _parse_line, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _parse_expression, U, U, 00H, 026H, 01H, 02H
$DGS STA_SYM, _parse_term, U, U, 00H, 026H, 01H, 02H
$DGS STA_SYM, _parse_factor, U, U, 00H, 026H, 01H, 02H
$DGS STA_SYM, _read_number, U, U, 00H, 026H, 01H, 02H
$DGS STA_SYM, _run_command, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _command_show, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _command_reset, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _printf, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _sensor_init, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _commands, U, U, 00H, 026H, 01H, 08H

@@DATA	DSEG	UNITP
_cursor:	DS	(2)
_commands:	DS	(8)

@@CODE	CSEG
_parse_line:
	push	hl
	call	!_parse_expression
	call	!_run_command
	pop	hl
	ret
_parse_expression:
	push	hl
	push	ax
	call	!_parse_term
	callt	[@@lsadd]
	pop	ax
	pop	hl
	ret
_parse_term:
	push	hl
	push	ax
	call	!_parse_factor
	callt	[@@lsmul]
	pop	ax
	pop	hl
	ret
_parse_factor:
	push	hl
	cmp	a,#028H
	bnz	$L0021
	call	!_parse_expression
	br	$L0022
	call	!_read_number
	pop	hl
	ret
_read_number:
	push	hl
	callt	[@@iumul]
	pop	hl
	ret
_run_command:
	push	hl
	movw	hl,#_commands
	movw	ax,[hl]
	call	!ax
	pop	hl
	ret
_command_show:
	push	hl
	movw	ax,#L0031
	push	ax
	call	!_printf
	pop	ax
	pop	hl
	ret
_command_reset:
	push	hl
	call	!_sensor_init
	pop	hl
	ret
	END

; *** Code Information ***
;
; $FILE C:\work\firmware\src\parser.c
;
; $FUNC parse_line(19)
;	CODE SIZE= 15 bytes, CLOCK_SIZE= 60 clocks, STACK_SIZE= 6 bytes
; $CALL parse_expression(ax)
; $CALL run_command(ax)
;
; $FUNC parse_expression(30)
;	CODE SIZE= 21 bytes, CLOCK_SIZE= 84 clocks, STACK_SIZE= 8 bytes
; $CALL parse_term(ax)
;
; $FUNC parse_term(43)
;	CODE SIZE= 21 bytes, CLOCK_SIZE= 84 clocks, STACK_SIZE= 8 bytes
; $CALL parse_factor(ax)
;
; $FUNC parse_factor(56)
;	CODE SIZE= 24 bytes, CLOCK_SIZE= 96 clocks, STACK_SIZE= 6 bytes
; $CALL parse_expression(ax)
; $CALL read_number(ax)
;
; $FUNC read_number(72)
;	CODE SIZE= 12 bytes, CLOCK_SIZE= 48 clocks, STACK_SIZE= 4 bytes
;
; $FUNC run_command(84)
;	CODE SIZE= 18 bytes, CLOCK_SIZE= 72 clocks, STACK_SIZE= 6 bytes
; $CALL commands(ax)
;
; $FUNC command_show(97)
;	CODE SIZE= 21 bytes, CLOCK_SIZE= 84 clocks, STACK_SIZE= 18 bytes
; $CALL printf(sp)
;
; $FUNC command_reset(106)
;	CODE SIZE= 12 bytes, CLOCK_SIZE= 48 clocks, STACK_SIZE= 4 bytes
; $CALL sensor_init(ax)
;
