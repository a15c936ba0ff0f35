; Ta/rn Series C Compiler V3.70 Assembler Source
;
; Source file : src\uart.c

$DGS GLV_SYM, _uart_init, U, U, 00H, 026H, 01H, 02H
$DGS STA_SYM, _wait, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _uart_read_line, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _uart_isr, U, U, 00H, 026H, 01H, 02H
$DGS STA_SYM, _store_byte, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _memcpy, U, U, 00H, 026H, 01H, 02H

@@DATA	DSEG	UNITP
_rx_buffer:	DS	(64)
_rx_head:	DS	(1)

@@CODE	CSEG
_uart_init:
	push	hl
	mov	BRGC,#05H
	call	!_wait
	pop	hl
	ret
_wait:
	push	hl
	mov	a,#0C8H
	dec	a
	bnz	$$-1
	pop	hl
	ret
_uart_read_line:
	push	hl
	push	ax
	call	!_wait
	movw	de,#_rx_buffer
	movw	bc,#020H
	push	bc
	push	de
	call	!_memcpy
	pop	de
	pop	bc
	pop	ax
	pop	hl
	ret
_uart_isr:
	push	ax
	push	bc
	push	de
	push	hl
	call	!_store_byte
	pop	hl
	pop	de
	pop	bc
	pop	ax
	reti
_store_byte:
	push	hl
	mov	a,_rx_head
	inc	a
	and	a,#03FH
	mov	_rx_head,a
	pop	hl
	ret
	END

; *** Code Information ***
;
; $FILE C:\work\firmware\src\uart.c
;
; $FUNC uart_init(17)
;	CODE SIZE= 15 bytes, CLOCK_SIZE= 60 clocks, STACK_SIZE= 2 bytes
; $CALL wait(ax)
;
; $FUNC wait(26)
;	CODE SIZE= 18 bytes, CLOCK_SIZE= 72 clocks, STACK_SIZE= 4 bytes
;
; $FUNC uart_read_line(35)
;	CODE SIZE= 39 bytes, CLOCK_SIZE= 156 clocks, STACK_SIZE= 10 bytes
; $CALL wait(ax)
; $CALL memcpy(hl,de,bc)
;
; $FUNC uart_isr(58)
;	CODE SIZE= 30 bytes, CLOCK_SIZE= 120 clocks, STACK_SIZE= 16 bytes
; $CALL store_byte(ax)
;
; $FUNC store_byte(70)
;	CODE SIZE= 21 bytes, CLOCK_SIZE= 84 clocks, STACK_SIZE= 4 bytes
;
