; Ta/rn Series C Compiler V3.70 Assembler Source
;
; Source file : src\flash.c

$DGS GLV_SYM, _flash_store, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _flash_copy, U, U, 07800H, 026H, 01H, 02H
$DGS GLV_SYM, _memcpy, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _eeprom_write, U, U, 00H, 026H, 01H, 02H

@@DATA	DSEG	UNITP
_page:	DS	(16)

@@CODE	CSEG
_flash_store:
	push	hl
	push	ax
	movw	ax,#_page
	call	!_flash_copy
	call	!_eeprom_write
	pop	ax
	pop	hl
	ret
_flash_copy:
	push	hl
	movw	bc,#010H
	push	bc
	call	!_memcpy
	pop	bc
	pop	hl
	ret
	END

; *** Code Information ***
;
; $FILE C:\work\firmware\src\flash.c
;
; $FUNC flash_store(12)
;	CODE SIZE= 24 bytes, CLOCK_SIZE= 96 clocks, STACK_SIZE= 8 bytes
; $CALL flash_copy(ax)
; $CALL eeprom_write(ax)
;
; $FUNC flash_copy(25)
;	CODE SIZE= 21 bytes, CLOCK_SIZE= 84 clocks, STACK_SIZE= 6 bytes
; $CALL memcpy(hl,de,bc)
;
