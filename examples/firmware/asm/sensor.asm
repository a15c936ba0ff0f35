; Ta/rn Series C Compiler V3.70 Assembler Source
;
; Source file : src\sensor.c

$DGS GLV_SYM, _sensor_init, U, U, 00H, 026H, 01H, 02H
$DGS STA_SYM, _wait, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _sensor_sample, U, U, 00H, 026H, 01H, 02H
$DGS GLV_SYM, _sensor_average, U, U, 00H, 026H, 01H, 02H

@@DATA	DSEG	UNITP
_samples:	DS	(32)

@@CODE	CSEG
_sensor_init:
	push	hl
	call	!_wait
	set1	ADCS
	pop	hl
	ret
_wait:
	push	hl
	push	ax
	bf	ADIF,$$
	pop	ax
	pop	hl
	ret
_sensor_sample:
	push	hl
	call	!_wait
	movw	ax,ADCR
	callt	[@@ismul]
	pop	hl
	ret
_sensor_average:
	push	hl
	push	ax
	movw	hl,#_samples
	callt	[@@lsadd]
	callt	[@@lsdiv]
	callt	[@@ftols]
	pop	ax
	pop	hl
	ret
	END

; *** Code Information ***
;
; $FILE C:\work\firmware\src\sensor.c
;
; $FUNC sensor_init(14)
;	CODE SIZE= 15 bytes, CLOCK_SIZE= 60 clocks, STACK_SIZE= 2 bytes
; $CALL wait(ax)
;
; $FUNC wait(22)
;	CODE SIZE= 18 bytes, CLOCK_SIZE= 72 clocks, STACK_SIZE= 6 bytes
;
; $FUNC sensor_sample(31)
;	CODE SIZE= 18 bytes, CLOCK_SIZE= 72 clocks, STACK_SIZE= 6 bytes
; $CALL wait(ax)
;
; $FUNC sensor_average(44)
;	CODE SIZE= 27 bytes, CLOCK_SIZE= 108 clocks, STACK_SIZE= 10 bytes
;
