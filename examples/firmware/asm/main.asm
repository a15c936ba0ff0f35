; Ta/rn Series C Compiler V3.70 Assembler Source
;
; Source file : src\main.c

$DGS GLV_SYM, _main, U, U, 00H, 026H, 01H, 02H
$DGS STA_SYM, _report, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _timer_isr, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _uart_init, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _uart_read_line, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _sensor_init, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _sensor_average, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _sensor_sample, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _parse_line, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _flash_store, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _printf, U, U, 00H, 026H, 01H, 02H

@@DATA	DSEG	UNITP
_tick_count:	DS	(4)
_line:	DS	(32)

@@CODE	CSEG
_main:
	push	hl
	push	ax
	movw	ax,sp
	movw	hl,ax
	call	!_uart_init
	call	!_sensor_init
	movw	ax,#_line
	push	ax
	call	!_uart_read_line
	pop	ax
	call	!_parse_line
	call	!_report
	call	!_flash_store
	br	$_main
	pop	ax
	pop	hl
	ret
_report:
	push	hl
	call	!_sensor_average
	movw	de,#0E8H
	callt	[@@lsmul]
	push	bc
	push	ax
	movw	ax,#L0003
	push	ax
	call	!_printf
	pop	de
	pop	hl
	ret
_timer_isr:
	push	ax
	push	bc
	push	de
	push	hl
	incw	_tick_count
	call	!_sensor_sample
	pop	hl
	pop	de
	pop	bc
	pop	ax
	reti
	END

; *** Code Information ***
;
; $FILE C:\work\firmware\src\main.c
;
; $FUNC main(21)
;	CODE SIZE= 51 bytes, CLOCK_SIZE= 204 clocks, STACK_SIZE= 8 bytes
; $CALL uart_init(ax)
; $CALL sensor_init(ax)
; $CALL uart_read_line(ax)
; $CALL parse_line(ax)
; $CALL report(ax)
; $CALL flash_store(ax)
;
; $FUNC report(48)
;	CODE SIZE= 36 bytes, CLOCK_SIZE= 144 clocks, STACK_SIZE= 12 bytes
; $CALL sensor_average(ax)
; $CALL printf(sp)
;
; $FUNC timer_isr(63)
;	CODE SIZE= 33 bytes, CLOCK_SIZE= 132 clocks, STACK_SIZE= 14 bytes
; $CALL sensor_sample(ax)
;
